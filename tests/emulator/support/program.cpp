#include "tests/emulator/support/program.h"

#include <csignal>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

Program::Program(const std::vector<std::string>& arguments)
{
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error("pipe");
    process = ::fork();
    if (process == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::close(ends[0]);
        std::string program = FREMULATOR;
        std::vector<std::string> copies = arguments;
        std::vector<char*> argv{program.data()};
        for (std::string& argument : copies)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        ::execv(FREMULATOR, argv.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    output = ::fdopen(ends[0], "r");
}

Program::~Program()
{
    if (process > 0)
        finish(SIGKILL);
    std::fclose(output);
}

std::string Program::line()
{
    std::string text;
    for (int c = std::fgetc(output); c != EOF && c != '\n'; c = std::fgetc(output))
        text += static_cast<char>(c);
    return text;
}

bool Program::more() const
{
    return std::feof(output) == 0;
}

int Program::finish(int signal)
{
    if (signal != 0)
        ::kill(process, signal);
    int status = 0;
    ::waitpid(process, &status, 0);
    process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::uint16_t portIn(const std::string& line)
{
    const std::string before = "listening on http://127.0.0.1:";
    const std::string after = "/possystem/v4/";
    if (!line.starts_with(before) || !line.ends_with(after))
        throw std::runtime_error("unexpected first line: " + line);
    return static_cast<std::uint16_t>(std::stoi(line.substr(before.size())));
}

Ending runToTheEnd(const std::string& arguments)
{
    FILE* pipe = ::popen(("timeout 20 '" FREMULATOR "' " + arguments + " 2>&1").c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("popen");
    Ending ending;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
        ending.output += static_cast<char>(c);
    ending.status = WEXITSTATUS(::pclose(pipe));
    return ending;
}
