#pragma once

#include <chrono>
#include <mutex>

namespace queue {

/// How often a worker asks about documents, shared by its lanes. The service allows a group a number of
/// questions that it does not name: after a refusal fewer are asked, after any other answer a little more.
class Pace
{
public:
    using Clock = std::chrono::steady_clock;

    /// The moment of the next question, which is taken with that.
    [[nodiscard]] Clock::time_point next(Clock::time_point now);
    /// Blocks until then.
    void wait();
    /// What the service made of a question.
    void note(bool isRefused);

private:
    std::mutex guard;
    std::chrono::microseconds between{0};
    Clock::time_point free;
};

} // namespace queue
