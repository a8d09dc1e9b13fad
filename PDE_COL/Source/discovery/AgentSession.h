#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <vector>

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

// net-snmp, made fit for a printer that may be broken or somebody else: it believes any sender, any
// community and any kind of packet, and looks at its clock only while nothing arrives.

using ObjectName = std::vector<oid>;
using PduHolder = std::unique_ptr<netsnmp_pdu, decltype(&snmp_free_pdu)>;

/// Keeps net-snmp from reading MIB files and per-host files and from keeping state on disk, and, but for a
/// development build that is given SNMPCONFPATH, from reading any configuration. To be called before
/// anything else of net-snmp; changes the environment variables that name MIBs and configuration.
void restrainNetSnmp();

/// A request for one object, from when it is sent.
struct Question {
    static constexpr int kUnderWay = -1;

    ObjectName name;
    bool ahead;                               ///< asked before it is known to count
    int id = 0;                               ///< net-snmp's for the request
    int earlierId = 0;                        ///< that of the same question asked ahead
    int status = kUnderWay;                   ///< then as snmp_synch_response gives it
    PduHolder answer{nullptr, snmp_free_pdu}; ///< there when the status is STAT_SUCCESS
};

/// A session with one agent, closed at the latest when the object goes.
class AgentSession {
public:
    using Clock = std::chrono::steady_clock;

    /// `wanted` is a session filled by snmp_parse_args; nothing is waited for after `end`.
    AgentSession(netsnmp_session& wanted, Clock::time_point end);
    ~AgentSession() { close(); }
    AgentSession(const AgentSession&) = delete;
    AgentSession& operator=(const AgentSession&) = delete;

    /// Null when the session could not be opened; `wanted` then holds the error for snmp_sess_perror. Its
    /// myvoid is this object.
    netsnmp_session* get() const { return session_; }
    void close();

    /// Asks for one object and waits for the answer, with net-snmp's time-outs and repeats, cut as the end
    /// comes near. The result is that of snmp_synch_response, `answer` null unless it is STAT_SUCCESS. Drops
    /// all questions.
    int get(const ObjectName& name, PduHolder& answer);

    /// From here on the question for the object after `name` counts, and is the first of `questions`. Those
    /// before it are dropped; it is asked unless it was asked ahead.
    void begin(const ObjectName& name);

    /// Asks for the object after `name` once, before it is known whether that counts. An answer of more than
    /// one variable, or of a large one, is dropped: should it count, it is asked for again. False when it
    /// could not be sent.
    bool askAhead(const ObjectName& name);

    /// Waits for the answer to the question that counts and takes it out, with the result of get. For one
    /// that was asked ahead the first of its tries begins now.
    int finish(PduHolder& answer);

    /// What has been asked for and not been given out, in the order of asking.
    const std::list<Question>& questions() const { return questions_; }

    /// Requests that are neither answered nor given up, those among them whose question was dropped.
    size_t underWay() const { return underWay_; }

    /// How long one try of a question takes before it is repeated.
    Clock::duration tryTime() const { return std::chrono::microseconds(timeout_); }

private:
    static int takeAnswer(int operation, netsnmp_session* session, int id, netsnmp_pdu* pdu, void* self);
    bool send(int command, Question& question, long timeout, int retries);
    void ask(int command, Question& question, int retries);
    void waitFor(const Question& question, Clock::time_point until);
    int giveOut(PduHolder& answer);
    long left() const;

    std::list<Question> questions_;
    size_t underWay_ = 0;
    netsnmp_session* session_;
    void* pointer_ = nullptr; ///< net-snmp's own of the session
    Clock::time_point end_;
    Clock::time_point lastSent_;
    long timeout_ = 0; ///< microseconds, of one try
    int retries_ = 0;
};
