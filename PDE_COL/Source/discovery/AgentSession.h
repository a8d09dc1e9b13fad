#pragma once

#include <chrono>

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

// net-snmp, made fit for a printer that may be broken or somebody else: it believes any sender, any
// community and any kind of packet, and looks at its clock only while nothing arrives.

/// Keeps net-snmp from reading MIB files and per-host files and from keeping state on disk, and, but for a
/// development build that is given SNMPCONFPATH, from reading any configuration. To be called before
/// anything else of net-snmp; changes the environment variables that name MIBs and configuration.
void restrainNetSnmp();

/// A session with one agent, closed at the latest when the object goes. One at a time.
class AgentSession {
public:
    /// `wanted` is a session filled by snmp_parse_args; no exchange goes on after `end`.
    AgentSession(netsnmp_session& wanted, std::chrono::steady_clock::time_point end);
    ~AgentSession();
    AgentSession(const AgentSession&) = delete;
    AgentSession& operator=(const AgentSession&) = delete;

    /// Null when the session could not be opened; `wanted` then holds the error for snmp_sess_perror.
    netsnmp_session* get() const { return session_; }
    void close();

private:
    netsnmp_session* session_;
};

/// snmp_synch_response on the session of the AgentSession: time-out and retries are cut as its end comes
/// near, and after it every exchange is a time-out. Takes `request` over; the caller
/// frees `*response`, which is null unless the result is STAT_SUCCESS.
int exchangeInTime(netsnmp_session* session, netsnmp_pdu* request, netsnmp_pdu** response);
