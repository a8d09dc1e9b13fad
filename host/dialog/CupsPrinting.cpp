#include "CupsPrinting.h"

#include <CupsServer.h>
#include <filesystem>
#include <fstream>
#include <span>
#include <system_error>
#include <utility>

namespace {

struct DeleteAnswer {
    void operator()(ipp_t* answer) const { ippDelete(answer); }
};
using Answer = std::unique_ptr<ipp_t, DeleteAnswer>;

/// Options in the library's form.
class CupsOptions {
public:
    explicit CupsOptions(const std::map<std::string, std::string>& options)
    {
        for (const auto& [name, value] : options)
            count_ = cupsAddOption(name.c_str(), value.c_str(), count_, &options_);
    }
    ~CupsOptions() { cupsFreeOptions(count_, options_); }
    CupsOptions(const CupsOptions&) = delete;
    CupsOptions& operator=(const CupsOptions&) = delete;

    int count() const { return count_; }
    cups_option_t* get() const { return options_; }

private:
    int count_ = 0;
    cups_option_t* options_ = nullptr;
};

/// Asks for all attributes of a queue, or of a job of it.
Answer attributesOf(http_t* server, const std::string& queue, int job)
{
    char uri[HTTP_MAX_URI];
    httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof uri, "ipp", nullptr, "localhost", 0, "/printers/%s",
                     queue.c_str());
    ipp_t* request = ippNewRequest(job > 0 ? IPP_OP_GET_JOB_ATTRIBUTES : IPP_OP_GET_PRINTER_ATTRIBUTES);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri);
    if (job > 0)
        ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", job);
    return Answer(cupsDoRequest(server, request, "/"));
}

int integerIn(const Answer& answer, const char* name)
{
    return ippGetInteger(ippFindAttribute(answer.get(), name, IPP_TAG_ZERO), 0);
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

PrintQueue queueOf(const cups_dest_t& destination)
{
    auto value = [&](const char* name) {
        return std::string(cupsGetOption(name, destination.num_options, destination.options) ?: "");
    };
    std::string description = value("printer-info");
    return {.name = destination.name,
            .description = description.empty() ? destination.name : description,
            .location = value("printer-location"),
            .isDefault = destination.is_default != 0,
            .isPrinting = value("printer-state") == std::to_string(IPP_PSTATE_PROCESSING),
            .isStopped = value("printer-state") == std::to_string(IPP_PSTATE_STOPPED),
            .acceptsJobs = value("printer-is-accepting-jobs") != "false"};
}

} // namespace

std::optional<std::vector<PrintQueue>> printQueues()
{
    CupsServer server = connectToCups();
    if (!server)
        return std::nullopt;
    std::vector<PrintQueue> queues;
    cups_dest_t* destinations = nullptr;
    int count = cupsGetDests2(server.get(), &destinations);
    for (const cups_dest_t& destination : std::span(destinations, static_cast<size_t>(count)))
        if (destination.instance == nullptr)
            queues.push_back(queueOf(destination));
    cupsFreeDests(count, destinations);
    return queues;
}

JobResult submitJob(const PrintJob& job)
{
    if (std::string reason = unreadable(job.files); !reason.empty())
        return {0, reason};
    CupsServer server = connectToCups();
    if (!server)
        return {0, std::string("The printing system (") + cupsServer() + ") does not answer"};
    std::vector<const char*> files;
    for (const std::string& file : job.files)
        files.push_back(file.c_str());
    CupsOptions options(job.options);
    int id = cupsPrintFiles2(server.get(), job.queue.c_str(), static_cast<int>(files.size()), files.data(),
                             job.title.c_str(), options.count(), options.get());
    if (id > 0)
        return {id, ""};
    return {0, cupsLastErrorString() ?: "the job was not accepted"};
}

std::optional<JobState> jobState(const std::string& queue, int id)
{
    CupsServer server = connectToCups();
    if (!server)
        return std::nullopt;
    Answer job = attributesOf(server.get(), queue, id);
    if (cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND)
        return JobState{.phase = JobPhase::Gone};
    if (ippFindAttribute(job.get(), "job-state", IPP_TAG_ENUM) == nullptr)
        return std::nullopt;
    JobState state{.phase = static_cast<JobPhase>(integerIn(job, "job-state")),
                   .pages = integerIn(job, "job-impressions-completed")};
    Answer printer = attributesOf(server.get(), queue, 0);
    ipp_attribute_t* reasons = ippFindAttribute(printer.get(), "printer-state-reasons", IPP_TAG_KEYWORD);
    if (integerIn(printer, "printer-state") == IPP_PSTATE_STOPPED)
        for (int i = 0; i < ippGetCount(reasons); ++i)
            state.printerReasons.emplace_back(ippGetString(reasons, i, nullptr));
    return state;
}

void cancelJob(const std::string& queue, int id)
{
    if (CupsServer server = connectToCups())
        (void)cupsCancelJob2(server.get(), queue.c_str(), id, 0);
}

std::optional<Conflict> firstConflict(ppd_file_t* ppd, const std::map<std::string, std::string>& options)
{
    CupsOptions chosen(options);
    (void)cupsMarkOptions(ppd, chosen.count(), chosen.get());
    std::vector<std::pair<ppd_option_t*, ppd_choice_t*>> suspects;
    if (ppdConflicts(ppd) > 0)
        for (ppd_option_t* o = ppdFirstOption(ppd); o != nullptr; o = ppdNextOption(ppd))
            if (ppd_choice_t* choice = ppdFindMarkedChoice(ppd, o->keyword);
                o->conflicted && choice != nullptr)
                suspects.emplace_back(o, choice);
    ppdMarkDefaults(ppd);
    std::optional<Conflict> found;
    // The library tells which options are in a conflict, not with which other: each pair is tried alone.
    for (size_t i = 0; i < suspects.size() && !found; ++i)
        for (size_t j = i + 1; j < suspects.size() && !found; ++j) {
            auto [option, choice] = suspects[i];
            auto [other, otherChoice] = suspects[j];
            (void)ppdMarkOption(ppd, option->keyword, choice->choice);
            (void)ppdMarkOption(ppd, other->keyword, otherChoice->choice);
            if (ppdConflicts(ppd) > 0 && option->conflicted && other->conflicted)
                found = {option->text, choice->text, other->text, otherChoice->text};
            ppdMarkDefaults(ppd);
        }
    return found;
}
