#include "Publisher.h"

#include <iostream>
#include <net/if.h>
#include <netinet/in.h>
#include <stdexcept>
#include <unistd.h>

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/address.h>
#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <avahi-common/thread-watch.h>

namespace {

constexpr char kServiceType[] = "_pdl-datastream._tcp";
constexpr uint16_t kRawPrintingPort = 9100;

/// Avahi takes no commas, spaces or dots in a host's label.
std::string hostNameFor(const std::string& address)
{
    std::string name = "r4270-printer-" + address + "-" + std::to_string(getpid()) + ".local";
    for (size_t i = 0; i + 6 < name.size(); ++i)
        if (name[i] == '.')
            name[i] = '-';
    return name;
}

} // namespace

/// Lives on Avahi's own thread, which makes all the calls below but the constructor's and the destructor's.
class Publisher::Announcement {
public:
    Announcement(const std::string& name, const std::string& address, bool verbose);
    ~Announcement();

private:
    static void clientChanged(AvahiClient* client, AvahiClientState state, void* self);
    static void groupChanged(AvahiEntryGroup* group, AvahiEntryGroupState state, void* self);
    void connect();
    void announce(AvahiClient* client);
    int addRecords();
    void takeAnotherName();
    void tell(const std::string& text) const { std::cerr << "r4270-printer: " << text << std::endl; }
    void tellFailure(int error) const
    {
        tell(std::string("the printer is not announced: ") + avahi_strerror(error));
    }

    std::string name_;
    std::string address_;
    bool verbose_;
    AvahiThreadedPoll* poll_;
    AvahiClient* client_ = nullptr;
    AvahiEntryGroup* group_ = nullptr;
};

Publisher::Announcement::Announcement(const std::string& name, const std::string& address, bool verbose)
    : name_(name), address_(address), verbose_(verbose), poll_(avahi_threaded_poll_new())
{
    if (poll_ != nullptr)
        connect();
    if (client_ == nullptr || avahi_threaded_poll_start(poll_) != 0) {
        if (client_ != nullptr)
            avahi_client_free(client_);
        if (poll_ != nullptr)
            avahi_threaded_poll_free(poll_);
        throw std::runtime_error("cannot announce the printer");
    }
}

Publisher::Announcement::~Announcement()
{
    avahi_threaded_poll_stop(poll_);
    if (client_ != nullptr)
        avahi_client_free(client_);
    avahi_threaded_poll_free(poll_);
}

void Publisher::Announcement::connect()
{
    group_ = nullptr;
    int error = 0;
    client_ =
        avahi_client_new(avahi_threaded_poll_get(poll_), AVAHI_CLIENT_NO_FAIL, clientChanged, this, &error);
    if (client_ == nullptr)
        tellFailure(error);
}

void Publisher::Announcement::clientChanged(AvahiClient* client, AvahiClientState state, void* self)
{
    auto* announcement = static_cast<Announcement*>(self);
    if (state == AVAHI_CLIENT_S_RUNNING) {
        announcement->announce(client);
    } else if (state == AVAHI_CLIENT_CONNECTING) {
        announcement->tell("waiting for the Avahi daemon to announce the printer");
    } else if (state == AVAHI_CLIENT_FAILURE && avahi_client_errno(client) == AVAHI_ERR_DISCONNECTED) {
        // The daemon is gone: a new client waits for the next one.
        avahi_client_free(client);
        announcement->connect();
    } else if (state == AVAHI_CLIENT_FAILURE) {
        announcement->tellFailure(avahi_client_errno(client));
    } else if (announcement->group_ != nullptr) {
        // The daemon is renaming its host: everything is announced again when it is done.
        avahi_entry_group_reset(announcement->group_);
    }
}

void Publisher::Announcement::groupChanged(AvahiEntryGroup* group, AvahiEntryGroupState state, void* self)
{
    auto* announcement = static_cast<Announcement*>(self);
    announcement->group_ = group;
    if (state == AVAHI_ENTRY_GROUP_COLLISION)
        announcement->takeAnotherName();
    else if (state == AVAHI_ENTRY_GROUP_ESTABLISHED && announcement->verbose_)
        announcement->tell("announced as \"" + announcement->name_ + "\"");
    else if (state == AVAHI_ENTRY_GROUP_FAILURE)
        announcement->tellFailure(avahi_client_errno(avahi_entry_group_get_client(group)));
}

void Publisher::Announcement::takeAnotherName()
{
    char* other = avahi_alternative_service_name(name_.c_str());
    name_ = other;
    avahi_free(other);
    tell("the name is taken; announcing the printer as \"" + name_ + "\"");
    announce(avahi_entry_group_get_client(group_));
}

int Publisher::Announcement::addRecords()
{
    AvahiAddress address;
    const bool anywhere = address_ == "0.0.0.0";
    const std::string host = hostNameFor(address_);
    AvahiIfIndex interface = AVAHI_IF_UNSPEC;
    int result = 0;
    if (!anywhere && avahi_address_parse(address_.c_str(), AVAHI_PROTO_INET, &address) != nullptr) {
        if (ntohl(address.data.ipv4.address) >> 24 == IN_LOOPBACKNET)
            interface = static_cast<AvahiIfIndex>(if_nametoindex("lo"));
        result = avahi_entry_group_add_address(group_, interface, AVAHI_PROTO_UNSPEC,
                                               AVAHI_PUBLISH_NO_REVERSE, host.c_str(), &address);
    }
    if (result != 0)
        return result;
    return avahi_entry_group_add_service(
        group_, interface, AVAHI_PROTO_UNSPEC, AvahiPublishFlags{}, name_.c_str(), kServiceType, nullptr,
        anywhere ? nullptr : host.c_str(), kRawPrintingPort, "ty=R4270", nullptr);
}

void Publisher::Announcement::announce(AvahiClient* client)
{
    if (group_ == nullptr)
        group_ = avahi_entry_group_new(client, groupChanged, this);
    else
        avahi_entry_group_reset(group_);
    if (group_ == nullptr) {
        tellFailure(avahi_client_errno(client));
        return;
    }
    int result = addRecords();
    if (result == 0)
        result = avahi_entry_group_commit(group_);
    if (result == AVAHI_ERR_COLLISION)
        takeAnotherName();
    else if (result != 0)
        tellFailure(result);
}

Publisher::Publisher(const std::string& name, const std::string& address, bool verbose)
    : announcement_(std::make_unique<Announcement>(name, address, verbose))
{
}

Publisher::~Publisher() = default;
