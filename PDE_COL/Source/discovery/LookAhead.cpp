#include "discovery/LookAhead.h"

#include <algorithm>
#include <limits>

LookAhead::LookAhead(AgentSession& session, const ObjectName& root, int most)
    : session_(session), columnPart_(root.size()), most_(static_cast<size_t>(most))
{
}

void LookAhead::learn(const ObjectName& name)
{
    window_ = name == expected_ ? std::min(2 * window_, most_) : 1;
    const bool sameShape = earlier_.size() == name.size();
    if (name.size() > columnPart_ + 1 && !(sameShape && earlier_[columnPart_] == name[columnPart_])) {
        lastRow_ = sameShape ? earlier_.back() : 0;
        firstRow_ = name.back();
    }
    earlier_ = expected_ = name;
    if (!makeNext(expected_))
        expected_.clear();
}

/// Turns a name into the one that probably comes after it: the next row of the column, after the last row the
/// first one of the next column.
bool LookAhead::makeNext(ObjectName& name) const
{
    constexpr oid kLargest = std::numeric_limits<uint32_t>::max();
    if (name.size() <= columnPart_ + 1 || name.back() == kLargest || name[columnPart_] == kLargest)
        return false;
    if (name.back() == lastRow_) {
        ++name[columnPart_];
        name.back() = firstRow_;
    } else {
        ++name.back();
    }
    return true;
}

int LookAhead::answerTo(const ObjectName& name, PduHolder& answer)
{
    learn(name);
    session_.begin(name);
    ObjectName next = session_.questions().back().name;
    while (std::max(session_.questions().size(), session_.underWay()) < window_ && makeNext(next) &&
           session_.askAhead(next))
        continue;
    const auto start = AgentSession::Clock::now();
    const int status = session_.finish(answer);
    if (AgentSession::Clock::now() - start >= session_.tryTime()) {
        // Lost on the way, or dropped by a printer that does not like being asked so much at a time.
        window_ = 1;
        most_ = std::max<size_t>(1, most_ / 2);
    }
    return status;
}
