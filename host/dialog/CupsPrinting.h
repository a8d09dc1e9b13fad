#pragma once

#include <map>
#include <string>
#include <vector>

// Queues and jobs of the CUPS server that the user's configuration names.

struct PrintQueue {
    std::string name;
    std::string description; ///< the name, where it has no other
    bool isDefault = false;
};

/// The server's queues by name; none when it does not answer within a second.
std::vector<PrintQueue> printQueues();

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

struct JobState {
    std::string text; ///< "waiting", "printing", "finished", ...
    bool ended = false;
};

JobState jobState(const std::string& queue, int id);
