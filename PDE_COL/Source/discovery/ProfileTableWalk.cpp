#include "discovery/ProfileTableWalk.h"

#include "discovery/LookAhead.h"
#include "discovery/SpoolMerge.h"
#include "discovery/SpoolTable.h"
#include "profiles/ProfileListOperations.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

int numprinted = 0;

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kProgramName[] = "snmpwalk";
constexpr oid kMib2[] = {1, 3, 6, 1, 2, 1};

enum ExitValue { kComplete = 0, kFailed = 1, kAgentError = 2 };

enum Setting { kIncludeRequested = 1, kPrintStatistics = 2, kDontCheckOrdering = 3 };

char message[128];

bool isSet(Setting setting)
{
    return netsnmp_ds_get_boolean(NETSNMP_DS_APPLICATION_ID, setting) != 0;
}

void registerSettings()
{
    static bool registered = false;
    const std::pair<Setting, const char*> settings[] = {{kIncludeRequested, "includeRequested"},
                                                        {kPrintStatistics, "printStatistics"},
                                                        {kDontCheckOrdering, "dontCheckOrdering"}};
    for (auto [setting, name] : settings) {
        if (!registered)
            netsnmp_ds_register_config(ASN_BOOLEAN, kProgramName, name, NETSNMP_DS_APPLICATION_ID, setting);
        netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, setting, 0);
    }
    registered = true;
}

bool isException(const netsnmp_variable_list& variable)
{
    return variable.type == SNMP_NOSUCHOBJECT || variable.type == SNMP_NOSUCHINSTANCE ||
           variable.type == SNMP_ENDOFMIBVIEW;
}

// The names go into the text as raw memory, not dotted: so on a little-endian machine the text ends a byte
// after it began.
void noteOrderFault(const ObjectName& earlier, const ObjectName& later)
{
    char first[255] = {};
    char second[255] = {};
    std::memcpy(first, earlier.data(), earlier.size());
    std::memcpy(second, later.data(), later.size());
    snprintf(message, sizeof message, "[SNMP] Error: OID not increasing: %s >= %s", first, second);
}

/// The loop of GETNEXT requests through one subtree.
class SubtreeWalk {
public:
    SubtreeWalk(AgentSession& session, const ObjectName& root)
        : session_(session.get()), ahead_(session, root, walkWindow), root_(root), current_(root),
          checkOrder_(!isSet(kDontCheckOrdering))
    {
    }

    /// Gives the exit value.
    int run()
    {
        while (running_) {
            PduHolder response(nullptr, snmp_free_pdu);
            lastStatus_ = ahead_.answerTo(current_, response);
            handle(response.get());
        }
        return exitValue_;
    }

    bool lastExchangeSucceeded() const { return lastStatus_ == STAT_SUCCESS; }

private:
    void stop(int exitValue)
    {
        running_ = false;
        exitValue_ = exitValue;
    }

    void handle(const netsnmp_pdu* response)
    {
        if (lastStatus_ == STAT_TIMEOUT) {
            stop(kFailed);
        } else if (lastStatus_ != STAT_SUCCESS) {
            snmp_sess_perror(kProgramName, session_);
            stop(kFailed);
        } else if (response->errstat == SNMP_ERR_NOSUCHNAME) {
            running_ = false; // the end of an SNMP version 1 agent's view
        } else if (response->errstat != SNMP_ERR_NOERROR) {
            stop(kAgentError);
        } else {
            // Without a variable there is no name to go on from.
            running_ = response->variables != nullptr;
            for (const netsnmp_variable_list* v = response->variables; v != nullptr; v = v->next_variable)
                accept(*v);
        }
    }

    // A variable that stops the walk does not keep those after it in the same answer from the spool.
    void accept(const netsnmp_variable_list& variable)
    {
        ObjectName name(variable.name, variable.name + variable.name_length);
        if (name.size() < root_.size() || !std::equal(root_.begin(), root_.end(), name.begin())) {
            running_ = false;
            return;
        }
        if (numprinted >= kMaxWalkVariables) {
            stop(kFailed);
            return;
        }
        ++numprinted;
        vSpoolPlist(variable.name, 0, &variable, 0);
        if (isException(variable)) {
            running_ = false;
            return;
        }
        if (checkOrder_ &&
            snmp_oid_compare(current_.data(), current_.size(), name.data(), name.size()) >= 0) {
            noteOrderFault(current_, name);
            stop(kFailed);
        }
        current_ = std::move(name);
    }

    netsnmp_session* session_;
    LookAhead ahead_;
    const ObjectName& root_;
    ObjectName current_;
    bool checkOrder_;
    bool running_ = true;
    int lastStatus_ = STAT_ERROR;
    int exitValue_ = kComplete;
};

bool parseRoot(const char* text, ObjectName& root)
{
    if (text == nullptr) {
        root.assign(std::begin(kMib2), std::end(kMib2));
        return true;
    }
    size_t length = MAX_OID_LEN;
    root.resize(length);
    const bool parsed = snmp_parse_oid(text, root.data(), &length) != nullptr;
    if (!parsed)
        snmp_perror(text);
    root.resize(length);
    return parsed;
}

int walkAgent(netsnmp_session& wanted, const ObjectName& root, Clock::time_point end)
{
    AgentSession session(wanted, end);
    if (session.get() == nullptr) {
        MyDebugMessage("[UTIL-MIB] SNMP Open Err\n", 0);
        snmp_sess_perror(kProgramName, &wanted);
        return kFailed;
    }
    if (isSet(kIncludeRequested))
        snmp_get_and_print(session.get(), root.data(), root.size());
    SubtreeWalk walk(session, root);
    int exitValue = walk.run();
    // Nothing below the root: it may be a single object.
    if (walk.lastExchangeSucceeded() && numprinted == 0)
        snmp_get_and_print(session.get(), root.data(), root.size());
    session.close();
    if (isSet(kPrintStatistics))
        MyDebugMessage("[UTIL-MIB] Variables found: ", numprinted);
    return exitValue;
}

// Gives what mib_walk gives, before the merge.
int walkByArguments(std::vector<std::string> words, Clock::time_point end)
{
    std::vector<char*> argv(words.size() + 1, nullptr);
    std::transform(words.begin(), words.end(), argv.begin(), [](std::string& word) { return word.data(); });
    int argc = static_cast<int>(words.size());
    static netsnmp_session wanted; // the community that the parser copies stays with it
    int next = snmp_parse_args(argc, argv.data(), &wanted, "C:", optProc);
    if (next == NETSNMP_PARSE_ARGS_SUCCESS_EXIT)
        return next;
    if (next < 0)
        return NETSNMP_PARSE_ARGS_ERROR_USAGE; // whether or not the parser has already said why
    ObjectName root;
    if (!parseRoot(next < argc ? argv[static_cast<size_t>(next)] : nullptr, root))
        return kFailed;
    return walkAgent(wanted, root, end);
}

} // namespace

int mib_walk(int argc, char* argv[])
{
    Clock::time_point end = Clock::now() + walkTimeLimit;
    restrainNetSnmp();
    registerSettings();
    vSpoolPlist(nullptr, 0, nullptr, 1);
    numprinted = 0;
    message[0] = '\0';
    int exitValue = NETSNMP_PARSE_ARGS_ERROR_USAGE;
    // The parser blanks out the community where it stands, and reads argv[1] even of an empty command line.
    if (argc > 0)
        exitValue = walkByArguments(std::vector<std::string>(argv, argv + argc), end);
    (void)vRestructPlistSpool2Current(exitValue < 0 ? kFailed : exitValue); // a failed write has no reader
    return exitValue;
}

void snmp_get_and_print(netsnmp_session* session, const oid* name, size_t length)
{
    PduHolder response(nullptr, snmp_free_pdu);
    auto& agent = *static_cast<AgentSession*>(session->myvoid);
    if (agent.get({name, name + length}, response) != STAT_SUCCESS || response->errstat != SNMP_ERR_NOERROR)
        return;
    for (const netsnmp_variable_list* v = response->variables; v != nullptr; v = v->next_variable) {
        ++numprinted;
        print_variable(v->name, v->name_length, v);
    }
}

void optProc(int, char* const*, int option)
{
    if (option != 'C')
        return;
    for (const char* letter = optarg; *letter != '\0'; ++letter) {
        switch (*letter) {
        case 'c':
            netsnmp_ds_toggle_boolean(NETSNMP_DS_APPLICATION_ID, kDontCheckOrdering);
            break;
        case 'p':
            netsnmp_ds_toggle_boolean(NETSNMP_DS_APPLICATION_ID, kPrintStatistics);
            break;
        case 'i':
            netsnmp_ds_toggle_boolean(NETSNMP_DS_APPLICATION_ID, kIncludeRequested);
            break;
        default:
            snprintf(message, sizeof message, "Unknown flag passed to -C: %c\n", *letter);
            break;
        }
    }
}

const char* walkMessage()
{
    return message;
}
