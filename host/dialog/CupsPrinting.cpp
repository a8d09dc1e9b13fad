#include "CupsPrinting.h"

#include <algorithm>
#include <cstdint>
#include <cups/cups.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <system_error>

namespace {

constexpr int kConnectMilliseconds = 1000;

struct CloseServer {
    void operator()(http_t* server) const { httpClose(server); }
};
struct DeleteAnswer {
    void operator()(ipp_t* answer) const { ippDelete(answer); }
};
using Server = std::unique_ptr<http_t, CloseServer>;
using Answer = std::unique_ptr<ipp_t, DeleteAnswer>;

Server connect()
{
    return Server(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                               kConnectMilliseconds, nullptr));
}

std::string defaultQueue(http_t* server)
{
    Answer answer(cupsDoRequest(server, ippNewRequest(IPP_OP_CUPS_GET_DEFAULT), "/"));
    ipp_attribute_t* name = ippFindAttribute(answer.get(), "printer-name", IPP_TAG_NAME);
    return name != nullptr ? ippGetString(name, 0, nullptr) : "";
}

/// Bytes of all files; none, and the reason in `error`, when one cannot be read.
std::optional<std::uintmax_t> sizeOf(const std::vector<std::string>& files, std::string& error)
{
    std::uintmax_t bytes = 0;
    for (const std::string& file : files) {
        std::error_code failure;
        bytes += std::filesystem::file_size(file, failure);
        if (failure || !std::ifstream(file)) {
            error = file + ": " + (failure ? failure.message() : "cannot be read");
            return std::nullopt;
        }
    }
    return bytes;
}

bool sendFile(http_t* server, const PrintJob& job, int id, size_t index,
              const std::function<void(std::streamsize)>& written)
{
    const std::string& file = job.files[index];
    std::string name = file.substr(file.rfind('/') + 1);
    bool isLast = index + 1 == job.files.size();
    if (cupsStartDocument(server, job.queue.c_str(), id, name.c_str(), CUPS_FORMAT_AUTO, isLast) !=
        HTTP_STATUS_CONTINUE)
        return false;
    std::ifstream stream(file, std::ios::binary);
    char buffer[65536];
    bool sent = true;
    while (sent && (stream.read(buffer, sizeof buffer), stream.gcount() > 0)) {
        sent = cupsWriteRequestData(server, buffer, static_cast<size_t>(stream.gcount())) ==
               HTTP_STATUS_CONTINUE;
        written(stream.gcount());
    }
    return cupsFinishDocument(server, job.queue.c_str()) < IPP_STATUS_REDIRECTION_OTHER_SITE && sent;
}

} // namespace

std::vector<PrintQueue> printQueues()
{
    std::vector<PrintQueue> queues;
    Server server = connect();
    if (!server)
        return queues;
    ipp_t* request = ippNewRequest(IPP_OP_CUPS_GET_PRINTERS);
    static const char* const wanted[] = {"printer-name", "printer-info"};
    ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", 2, nullptr, wanted);
    Answer answer(cupsDoRequest(server.get(), request, "/"));
    std::string byDefault = defaultQueue(server.get());
    PrintQueue queue;
    for (ipp_attribute_t* a = ippFirstAttribute(answer.get());; a = ippNextAttribute(answer.get())) {
        if (a == nullptr || ippGetGroupTag(a) != IPP_TAG_PRINTER) {
            if (!queue.name.empty())
                queues.push_back(queue);
            queue = {};
            if (a == nullptr)
                break;
            continue;
        }
        std::string name = ippGetName(a) ?: "";
        const char* value = ippGetString(a, 0, nullptr);
        if (name == "printer-name" && value != nullptr) {
            queue.name = value;
            queue.isDefault = queue.name == byDefault;
        } else if (name == "printer-info" && value != nullptr) {
            queue.description = value;
        }
    }
    for (PrintQueue& q : queues)
        if (q.description.empty())
            q.description = q.name;
    std::sort(queues.begin(), queues.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return queues;
}

JobResult submitJob(const PrintJob& job, const std::function<void(int percent)>& progress)
{
    JobResult result;
    if (job.files.empty())
        return {0, "There is no file to print"};
    std::optional<std::uintmax_t> total = sizeOf(job.files, result.error);
    if (!total)
        return result;
    Server server = connect();
    if (!server)
        return {0, std::string("The printing system (") + cupsServer() + ") does not answer"};
    cups_option_t* options = nullptr;
    int count = 0;
    for (const auto& [name, value] : job.options)
        count = cupsAddOption(name.c_str(), value.c_str(), count, &options);
    result.id = cupsCreateJob(server.get(), job.queue.c_str(), job.title.c_str(), count, options);
    cupsFreeOptions(count, options);
    std::uintmax_t done = 0;
    bool sent = result.id > 0;
    for (size_t i = 0; sent && i < job.files.size(); ++i)
        sent = sendFile(server.get(), job, result.id, i, [&](std::streamsize bytes) {
            done += static_cast<std::uintmax_t>(bytes);
            progress(static_cast<int>(done * 100 / std::max<std::uintmax_t>(*total, 1)));
        });
    if (sent)
        return result;
    result.error = cupsLastErrorString() ?: "the job was not accepted";
    if (result.id > 0)
        (void)cupsCancelJob2(server.get(), job.queue.c_str(), result.id, 0); // it may have ended by itself
    result.id = 0;
    return result;
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
