#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <sys/types.h>
#include <vector>

/// The built program; its standard output is read line by line.
class Program
{
public:
    explicit Program(const std::vector<std::string>& arguments);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::string line();

    /// Whether the program has not closed its output yet.
    [[nodiscard]] bool more() const;

    [[nodiscard]] pid_t pid() const { return process; }

    /// Sends the signal (0: none), waits, and returns the exit status or the negated signal that ended it.
    int finish(int signal);

private:
    pid_t process = -1;
    FILE* output = nullptr;
};

/// The port in the first line that the program prints.
[[nodiscard]] std::uint16_t portIn(const std::string& line);

struct Ending
{
    int status = 0;
    std::string output{};
};

/// Runs the program with arguments as a shell reads them; what it prints is that of both streams.
[[nodiscard]] Ending runToTheEnd(const std::string& arguments);
