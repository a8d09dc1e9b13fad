#pragma once

#include "discovery/AgentSession.h"

/// The questions of a walk, asked ahead of time: while an answer is outstanding, what comes next if the table
/// goes on as it has so far. Answers are given out as a walk that waits for each would get them, so what the
/// agent makes of that changes nothing but the time it takes.
class LookAhead {
public:
    /// `most` is how many questions may be under way at a time, 1 for a walk that waits. The walk is that of
    /// the table `root`.
    LookAhead(AgentSession& session, const ObjectName& root, int most);

    /// The answer of the agent to the question what comes after `name`, as AgentSession::get gives it.
    int answerTo(const ObjectName& name, PduHolder& answer);

private:
    void learn(const ObjectName& name);
    bool makeNext(ObjectName& name) const;

    AgentSession& session_;
    size_t columnPart_;
    size_t most_;
    size_t window_ = 1;   ///< questions under way at a time, for now
    ObjectName earlier_;  ///< what was asked about last
    ObjectName expected_; ///< what it should be followed by; empty when nobody can tell
    oid firstRow_ = 0;    ///< of the current column
    oid lastRow_ = 0;     ///< of the column before; 0 as long as there is none
};
