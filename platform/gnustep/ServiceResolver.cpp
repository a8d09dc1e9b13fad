#include "ServiceResolver.h"

#include <condition_variable>
#include <csignal>
#include <memory>
#include <mutex>
#include <thread>

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>
#include <avahi-common/simple-watch.h>

namespace {

using Clock = std::chrono::steady_clock;

/// What the caller and the thread that asks the daemon share. The caller may leave before the thread does.
struct Lookup {
    ServiceName service;
    Clock::time_point deadline;

    std::mutex mutex;
    std::condition_variable ended;
    bool over = false;
    std::optional<sockaddr_in> address;

    void end(const std::optional<sockaddr_in>& found = {})
    {
        std::lock_guard lock(mutex);
        if (!over)
            address = found;
        over = true;
        ended.notify_all();
    }

    bool isOver()
    {
        std::lock_guard lock(mutex);
        return over;
    }
};

void clientChanged(AvahiClient*, AvahiClientState state, void* lookup)
{
    if (state == AVAHI_CLIENT_FAILURE)
        static_cast<Lookup*>(lookup)->end();
}

void resolved(AvahiServiceResolver*, AvahiIfIndex, AvahiProtocol, AvahiResolverEvent event, const char*,
              const char*, const char*, const char*, const AvahiAddress* found, uint16_t port,
              AvahiStringList*, AvahiLookupResultFlags, void* lookup)
{
    if (event != AVAHI_RESOLVER_FOUND || found->proto != AVAHI_PROTO_INET)
        return static_cast<Lookup*>(lookup)->end();
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = found->data.ipv4.address;
    static_cast<Lookup*>(lookup)->end(address);
}

void askDaemon(Lookup& lookup)
{
    using Poll = std::unique_ptr<AvahiSimplePoll, decltype(&avahi_simple_poll_free)>;
    using Client = std::unique_ptr<AvahiClient, decltype(&avahi_client_free)>;
    Poll poll(avahi_simple_poll_new(), avahi_simple_poll_free);
    if (poll == nullptr)
        return;
    // Here the message bus or the daemon may take its own long time.
    Client client(avahi_client_new(avahi_simple_poll_get(poll.get()), AvahiClientFlags{}, clientChanged,
                                   &lookup, nullptr),
                  avahi_client_free);
    const ServiceName& service = lookup.service;
    if (client == nullptr || lookup.isOver() ||
        avahi_service_resolver_new(client.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, service.name.c_str(),
                                   service.type.c_str(), service.domain.c_str(), AVAHI_PROTO_INET,
                                   AvahiLookupFlags{}, resolved, &lookup) == nullptr)
        return;
    while (!lookup.isOver()) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(lookup.deadline - Clock::now());
        if (left.count() <= 0 || avahi_simple_poll_iterate(poll.get(), static_cast<int>(left.count())) != 0)
            return;
    }
}

/// A thread of its own, since Avahi's calls to the message bus have no time limit that could be set. One that
/// hangs there is left to itself: it ends when the bus library gives up, and touches nothing but `lookup`.
bool startAsking(const std::shared_ptr<Lookup>& lookup)
{
    // The host's signals are handled by the host's threads.
    sigset_t all, earlier;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &earlier);
    bool started = true;
    try {
        std::thread([lookup] {
            askDaemon(*lookup);
            lookup->end();
        }).detach();
    } catch (const std::system_error&) {
        started = false;
    }
    pthread_sigmask(SIG_SETMASK, &earlier, nullptr);
    return started;
}

} // namespace

std::optional<sockaddr_in> resolveService(const ServiceName& service, std::chrono::milliseconds timeout)
{
    auto lookup = std::make_shared<Lookup>();
    lookup->service = service;
    lookup->deadline = Clock::now() + timeout;
    if (!startAsking(lookup))
        return {};
    std::unique_lock lock(lookup->mutex);
    lookup->ended.wait_until(lock, lookup->deadline, [&] { return lookup->over; });
    lookup->over = true;
    return lookup->address;
}
