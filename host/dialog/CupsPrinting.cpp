#include "CupsPrinting.h"

#include <cups/cups.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <span>
#include <system_error>

namespace {

constexpr int kConnectMilliseconds = 1000;

struct CloseServer {
    void operator()(http_t* server) const { httpClose(server); }
};
using Server = std::unique_ptr<http_t, CloseServer>;

Server connect()
{
    return Server(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                               kConnectMilliseconds, nullptr));
}

/// Why one of the files cannot be printed; "" when all can be read.
std::string unreadable(const std::vector<std::string>& files)
{
    for (const std::string& file : files) {
        std::error_code failure;
        (void)std::filesystem::file_size(file, failure); // fails on what is no file, too
        if (failure || !std::ifstream(file))
            return file + ": " + (failure ? failure.message() : "cannot be read");
    }
    return files.empty() ? "There is no file to print" : "";
}

} // namespace

std::vector<PrintQueue> printQueues()
{
    std::vector<PrintQueue> queues;
    Server server = connect();
    cups_dest_t* destinations = nullptr;
    int count = server ? cupsGetDests2(server.get(), &destinations) : 0;
    for (const cups_dest_t& d : std::span(destinations, static_cast<size_t>(count))) {
        const char* description = cupsGetOption("printer-info", d.num_options, d.options);
        bool named = description != nullptr && *description != '\0';
        if (d.instance == nullptr)
            queues.push_back({d.name, named ? description : d.name, d.is_default != 0});
    }
    cupsFreeDests(count, destinations);
    return queues;
}

JobResult submitJob(const PrintJob& job)
{
    if (std::string reason = unreadable(job.files); !reason.empty())
        return {0, reason};
    Server server = connect();
    if (!server)
        return {0, std::string("The printing system (") + cupsServer() + ") does not answer"};
    std::vector<const char*> files;
    for (const std::string& file : job.files)
        files.push_back(file.c_str());
    cups_option_t* options = nullptr;
    int count = 0;
    for (const auto& [name, value] : job.options)
        count = cupsAddOption(name.c_str(), value.c_str(), count, &options);
    int id = cupsPrintFiles2(server.get(), job.queue.c_str(), static_cast<int>(files.size()), files.data(),
                             job.title.c_str(), count, options);
    cupsFreeOptions(count, options);
    if (id > 0)
        return {id, ""};
    return {0, cupsLastErrorString() ?: "the job was not accepted"};
}

JobState jobState(const std::string& queue, int id)
{
    Server server = connect();
    cups_job_t* jobs = nullptr;
    int count = server ? cupsGetJobs2(server.get(), &jobs, queue.c_str(), 0, CUPS_WHICHJOBS_ALL) : -1;
    JobState state{"sent to the printer", count < 0};
    for (int i = 0; i < count; ++i) {
        if (jobs[i].id != id)
            continue;
        switch (jobs[i].state) {
        case IPP_JSTATE_PENDING:
            state = {"waiting", false};
            break;
        case IPP_JSTATE_HELD:
            state = {"held", true};
            break;
        case IPP_JSTATE_PROCESSING:
            state = {"printing", false};
            break;
        case IPP_JSTATE_STOPPED:
            state = {"stopped", true};
            break;
        case IPP_JSTATE_CANCELED:
            state = {"cancelled", true};
            break;
        case IPP_JSTATE_ABORTED:
            state = {"aborted by the printing system", true};
            break;
        case IPP_JSTATE_COMPLETED:
            state = {"finished", true};
            break;
        }
    }
    cupsFreeJobs(count, jobs);
    return state;
}
