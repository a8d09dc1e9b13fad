#pragma once

#include <cups/cups.h>
#include <memory>

struct CloseCupsServer {
    void operator()(http_t* server) const { httpClose(server); }
};
using CupsServer = std::unique_ptr<http_t, CloseCupsServer>;

/// The server that the user's configuration names; null when it does not answer within a second. Requests to
/// it fail when it is silent for five seconds then.
CupsServer connectToCups();
