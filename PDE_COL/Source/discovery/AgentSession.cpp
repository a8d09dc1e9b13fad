#include "discovery/AgentSession.h"

#include "profiles/BuildKind.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sched.h>
#include <sys/socket.h>
#include <utility>

using namespace std::chrono;

namespace {

// A folder that cannot exist, so that nothing is found or made in it.
constexpr char kNowhere[] = "/dev/null/none";

// How long an answer is waited for awake. A printer nearby answers before a process has gone to sleep and
// been woken again, and a full table is 3500 requests.
constexpr auto kAwake = microseconds(100);

bool sameAddress(const netsnmp_sockaddr_storage& a, const netsnmp_sockaddr_storage& b)
{
    if (a.sa.sa_family != b.sa.sa_family)
        return false;
    if (a.sa.sa_family == AF_INET)
        return a.sin.sin_port == b.sin.sin_port && a.sin.sin_addr.s_addr == b.sin.sin_addr.s_addr;
    return a.sa.sa_family == AF_INET6 && a.sin6.sin6_port == b.sin6.sin6_port &&
           std::memcmp(&a.sin6.sin6_addr, &b.sin6.sin6_addr, sizeof a.sin6.sin6_addr) == 0;
}

// Runs for every packet, before it is parsed.
int comesFromAgent(netsnmp_session*, netsnmp_transport* transport, void* from, int fromLength)
{
    constexpr int kPairSize = sizeof(netsnmp_indexed_addr_pair);
    if (from == nullptr || fromLength != kPairSize || transport->data_length != kPairSize)
        return 0;
    return sameAddress(static_cast<netsnmp_indexed_addr_pair*>(from)->remote_addr,
                       static_cast<netsnmp_indexed_addr_pair*>(transport->data)->remote_addr);
}

// Anything but a response would end the exchange too, and leave its request behind.
int isResponse(netsnmp_session* session, netsnmp_pdu* pdu, int parseError)
{
    return parseError == SNMPERR_SUCCESS && pdu->command == SNMP_MSG_RESPONSE &&
           pdu->version == session->version && pdu->community_len == session->community_len &&
           std::memcmp(pdu->community, session->community, session->community_len) == 0;
}

bool isSmall(const netsnmp_pdu& answer)
{
    // The longest value that is kept for a question that may not count.
    constexpr size_t kLongest = 1024;
    const netsnmp_variable_list* only = answer.variables;
    return only == nullptr || (only->next_variable == nullptr && only->val_len <= kLongest);
}

} // namespace

void restrainNetSnmp()
{
    setenv("MIBS", "", 1);
    setenv("MIBDIRS", "", 1);
    unsetenv("MIBFILES");
    for (int off : {NETSNMP_DS_LIB_DISABLE_PERSISTENT_LOAD, NETSNMP_DS_LIB_DISABLE_PERSISTENT_SAVE,
                    NETSNMP_DS_LIB_DONT_LOAD_HOST_FILES})
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, off, 1);
    // The indexes of certificates are made below this folder whatever the settings say.
    set_persistent_directory(kNowhere);
    if (mayConfigureWalk())
        return;
    unsetenv("SNMPCONFPATH");
    for (int off : {NETSNMP_DS_LIB_DONT_READ_CONFIGS, NETSNMP_DS_LIB_DONT_PERSIST_STATE})
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, off, 1);
    set_configuration_directory(kNowhere);
}

AgentSession::AgentSession(netsnmp_session& wanted, Clock::time_point end)
    : session_(snmp_open_ex(&wanted, comesFromAgent, nullptr, isResponse, nullptr, nullptr, nullptr)),
      end_(end)
{
    if (session_ == nullptr)
        return;
    session_->myvoid = this;
    pointer_ = snmp_sess_pointer(session_);
    timeout_ = session_->timeout;
    retries_ = session_->retries;
}

void AgentSession::close()
{
    questions_.clear();
    if (session_ != nullptr)
        snmp_close(session_);
    session_ = nullptr;
}

long AgentSession::left() const
{
    return std::max<long>(0, duration_cast<microseconds>(end_ - Clock::now()).count());
}

// Called for an answer, a time-out and a repeat of any request.
int AgentSession::takeAnswer(int operation, netsnmp_session* session, int id, netsnmp_pdu* pdu, void* self)
{
    if (operation == NETSNMP_CALLBACK_OP_RESEND)
        return 1;
    auto& agent = *static_cast<AgentSession*>(self);
    --agent.underWay_;
    auto question = std::find_if(agent.questions_.begin(), agent.questions_.end(), [&](const Question& each) {
        return each.status == Question::kUnderWay && (each.id == id || each.earlierId == id);
    });
    if (question == agent.questions_.end())
        return 1;
    if (operation == NETSNMP_CALLBACK_OP_TIMED_OUT) {
        question->status = STAT_TIMEOUT;
        session->s_snmp_errno = SNMPERR_TIMEOUT;
    } else if (operation != NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE || pdu == nullptr) {
        question->status = STAT_ERROR;
    } else if (question->ahead && !isSmall(*pdu)) {
        agent.questions_.erase(question);
    } else {
        question->answer.reset(snmp_clone_pdu(pdu));
        question->status = question->answer != nullptr ? STAT_SUCCESS : STAT_ERROR;
    }
    return 1;
}

bool AgentSession::send(int command, Question& question, long timeout, int retries)
{
    session_->timeout = timeout;
    session_->retries = retries;
    netsnmp_pdu* request = snmp_pdu_create(command);
    snmp_add_null_var(request, question.name.data(), question.name.size());
    question.earlierId = question.id;
    question.id = snmp_async_send(session_, request, takeAnswer, this);
    lastSent_ = Clock::now();
    if (question.id == 0)
        snmp_free_pdu(request);
    else
        ++underWay_;
    return question.id != 0;
}

// With net-snmp's time-out and so many repeats, as far as there is time for them.
void AgentSession::ask(int command, Question& question, int retries)
{
    const long time = left();
    const long timeout = std::min(timeout_, time);
    if (time == 0 || retries < 0)
        question.status = STAT_TIMEOUT;
    else if (!send(command, question, timeout, static_cast<int>(std::min<long>(retries, time / timeout - 1))))
        question.status = STAT_ERROR;
}

bool AgentSession::askAhead(const ObjectName& name)
{
    questions_.push_back({name, true});
    // It is not to be repeated, and its answer may come as long as there is time. The number of repeats is
    // the session's, so it stays that of the question that counts.
    const bool sent = left() > 0 && send(SNMP_MSG_GETNEXT, questions_.back(), left() + timeout_, retries_);
    if (!sent)
        questions_.pop_back();
    return sent;
}

void AgentSession::waitFor(const Question& question, Clock::time_point until)
{
    // net-snmp reports every packet that it cannot read: a printer must not fill the user's log. Without any
    // log it would turn to standard error after all.
    [[maybe_unused]] static netsnmp_log_handler* silent =
        netsnmp_register_loghandler(NETSNMP_LOGHANDLER_NONE, LOG_DEBUG);
    snmp_disable_stderrlog();
    for (Clock::time_point now; question.status == Question::kUnderWay && (now = Clock::now()) < until;) {
        const bool awake = now < lastSent_ + kAwake;
        const auto wait = duration_cast<microseconds>(awake ? Clock::duration::zero() : until - now);
        timeval time{wait / seconds(1), (wait % seconds(1)).count()};
        int count = 0;
        int block = 0;
        fd_set ready;
        FD_ZERO(&ready);
        snmp_sess_select_info(pointer_, &count, &ready, &time, &block);
        if (select(count, &ready, nullptr, nullptr, &time) > 0)
            snmp_sess_read(pointer_, &ready);
        else if (awake)
            sched_yield();
        // Each time: packets that are not taken must not keep a request from timing out.
        snmp_sess_timeout(pointer_);
    }
    snmp_enable_stderrlog();
}

int AgentSession::giveOut(PduHolder& answer)
{
    waitFor(questions_.front(), end_);
    answer = std::move(questions_.front().answer);
    const int status = questions_.front().status;
    questions_.pop_front();
    return status == Question::kUnderWay ? STAT_TIMEOUT : status;
}

int AgentSession::get(const ObjectName& name, PduHolder& answer)
{
    questions_.clear();
    questions_.push_back({name, false});
    ask(SNMP_MSG_GET, questions_.back(), retries_);
    return giveOut(answer);
}

void AgentSession::begin(const ObjectName& name)
{
    while (!questions_.empty() && questions_.front().name != name)
        questions_.pop_front();
    if (!questions_.empty())
        return;
    questions_.push_back({name, false});
    ask(SNMP_MSG_GETNEXT, questions_.back(), retries_);
}

int AgentSession::finish(PduHolder& answer)
{
    Question& question = questions_.front();
    if (std::exchange(question.ahead, false)) {
        waitFor(question, std::min(end_, Clock::now() + tryTime()));
        if (question.status == Question::kUnderWay)
            ask(SNMP_MSG_GETNEXT, question, retries_ - 1);
    }
    return giveOut(answer);
}
