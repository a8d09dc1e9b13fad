#pragma once

#include <cups/ppd.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Queues and jobs of the CUPS server that the user's configuration names. Texts are UTF-8.

struct PrintQueue {
    std::string name;
    std::string description; ///< the name, where it has no other
    std::string location;    ///< may be empty
    bool isDefault = false;
    bool isPrinting = false;
    bool isStopped = false;
    bool acceptsJobs = true;

    bool operator==(const PrintQueue&) const = default;
};

/// The server's queues by name; nothing when it does not answer within a second.
std::optional<std::vector<PrintQueue>> printQueues();

struct PrintJob {
    std::string queue;
    std::string title;
    std::vector<std::string> files;
    std::map<std::string, std::string> options;
};

struct JobResult {
    int id = 0;        ///< 0 when the job was not accepted
    std::string error; ///< the server's, or which file cannot be read
};

/// Sends the job; one of which a part cannot be sent is cancelled.
JobResult submitJob(const PrintJob& job);

/// By IPP's numbers. A job that is gone has ended, and the server keeps no record of it.
enum class JobPhase { Waiting = 3, Held, Printing, Stopped, Cancelled, Aborted, Finished, Gone };

struct JobState {
    JobPhase phase = JobPhase::Waiting;
    int pages = 0;                           ///< printed so far
    std::vector<std::string> printerReasons; ///< keywords of what keeps the printer; empty while it runs
};

/// Nothing when the server does not answer.
std::optional<JobState> jobState(const std::string& queue, int id);

/// A job that has ended stays as it is.
void cancelJob(const std::string& queue, int id);

/// Two choices that do not go together, in the PPD's own words.
struct Conflict {
    std::string option, choice, otherOption, otherChoice;
};

/// The first conflict among the PPD's defaults with `options` put over them. The marks of the PPD are its
/// defaults before and after.
std::optional<Conflict> firstConflict(ppd_file_t* ppd, const std::map<std::string, std::string>& options);
