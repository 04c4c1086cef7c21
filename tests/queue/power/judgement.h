#pragma once

#include "tests/queue/power/disk.h"
#include "tests/queue/power/recordingvfs.h"

#include <QStringList>

namespace power {

/// What is done with a database, and what must hold of it whenever the power goes.
struct Scenario
{
    /// Works in an empty folder, and promises the content whenever an operation has returned.
    std::function<void(const QString& folder, RecordingVfs& vfs)> run;
    /// Opens what was found after a cut and goes on with it. Returns the content that was found; throws
    /// till::Error where something is wrong with it.
    std::function<QByteArray(const QString& folder)> contentAfterCut;
};

/// Runs the scenario once.
[[nodiscard]] Requests recordingOf(const Scenario& scenario);

struct Trial
{
    /// At least so many different ones are judged.
    int images = 0;
    Disk::Lies lies = {};
    /// Ends after so many problems.
    int mostProblems = 5;
};

struct Verdict
{
    /// How many were judged.
    int images = 0;
    /// The moments at which the power went.
    int moments = 0;
    QStringList problems;
};

/// Cuts the power at every request and judges what is found then: the last content that was promised, or
/// the next one.
[[nodiscard]] Verdict verdictOn(const Requests& requests, const Scenario& scenario, const Trial& trial);

} // namespace power
