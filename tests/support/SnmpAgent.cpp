#include "support/SnmpAgent.h"

#include <arpa/inet.h>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const SnmpName kTable = {1, 3, 6, 1, 4, 1, 99999, 1, 1, 1, 1, 6, 13, 1, 1};

int boundSocket(const char* address, int port)
{
    int s = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(static_cast<uint16_t>(port));
    inet_pton(AF_INET, address, &name.sin_addr);
    if (bind(s, reinterpret_cast<sockaddr*>(&name), sizeof name) != 0)
        throw std::runtime_error(std::string("cannot bind to ") + address);
    return s;
}

int portOf(int socket)
{
    sockaddr_in name{};
    socklen_t length = sizeof name;
    getsockname(socket, reinterpret_cast<sockaddr*>(&name), &length);
    return ntohs(name.sin_port);
}

std::string berLength(size_t length)
{
    if (length < 0x80)
        return {static_cast<char>(length)};
    std::string bytes;
    for (; length > 0; length >>= 8)
        bytes.insert(bytes.begin(), static_cast<char>(length));
    return static_cast<char>(0x80 | bytes.size()) + bytes;
}

/// Takes BER elements from the front of a text; throws on anything that a client would not send.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }

    std::pair<uint8_t, std::string_view> element()
    {
        uint8_t tag = byte();
        size_t length = byte();
        if (length & 0x80) {
            size_t count = length & 0x7f;
            length = 0;
            while (count-- > 0)
                length = length << 8 | byte();
        }
        std::string_view content = rest_.substr(0, length);
        rest_ = rest_.substr(content.size());
        return {tag, content};
    }

    int32_t integer()
    {
        std::string_view content = element().second;
        int32_t value = !content.empty() && content[0] < 0 ? -1 : 0;
        for (char c : content)
            value = static_cast<int32_t>(static_cast<uint32_t>(value) << 8 | static_cast<uint8_t>(c));
        return value;
    }

    SnmpName name()
    {
        SnmpName result = {1, 3};
        uint32_t part = 0;
        for (char c : element().second.substr(1)) {
            part = part << 7 | (static_cast<uint8_t>(c) & 0x7f);
            if (c >= 0) {
                result.push_back(part);
                part = 0;
            }
        }
        return result;
    }

private:
    uint8_t byte()
    {
        uint8_t result = static_cast<uint8_t>(rest_.at(0));
        rest_ = rest_.substr(1);
        return result;
    }

    std::string_view rest_;
};

std::optional<SnmpMessage> decoded(std::string_view datagram)
try {
    SnmpMessage message;
    Reader body(Reader(datagram).element().second);
    message.version = body.integer();
    message.community = body.element().second;
    auto [tag, content] = body.element();
    message.pdu = tag;
    Reader pdu(content);
    message.requestId = pdu.integer();
    message.errorStatus = pdu.integer();
    message.errorIndex = pdu.integer();
    for (Reader list(pdu.element().second); !list.atEnd();) {
        Reader pair(list.element().second);
        message.variables.push_back({pair.name(), {}});
    }
    return message;
} catch (const std::out_of_range&) {
    return std::nullopt;
}

} // namespace

std::string ber(uint8_t tag, const std::string& content)
{
    return static_cast<char>(tag) + berLength(content.size()) + content;
}

std::string berInteger(int64_t value)
{
    std::string content(1, static_cast<char>(value));
    for (int64_t rest = value >> 8; rest != content[0] >> 7; rest >>= 8)
        content.insert(content.begin(), static_cast<char>(rest));
    return ber(kSnmpInteger, content);
}

std::string berString(const std::string& text)
{
    return ber(kSnmpString, text);
}

std::string berName(const SnmpName& name)
{
    std::string content(1, static_cast<char>(name[0] * 40 + name[1]));
    for (size_t i = 2; i < name.size(); ++i) {
        std::string part(1, static_cast<char>(name[i] & 0x7f));
        for (uint32_t rest = name[i] >> 7; rest > 0; rest >>= 7)
            part.insert(part.begin(), static_cast<char>(0x80 | (rest & 0x7f)));
        content += part;
    }
    return ber(kSnmpName, content);
}

std::string SnmpMessage::encoded() const
{
    std::string list;
    for (const SnmpVariable& variable : variables)
        list += ber(kSnmpSequence, berName(variable.name) + variable.value);
    std::string body = berInteger(requestId) + berInteger(errorStatus) + berInteger(errorIndex);
    return ber(kSnmpSequence,
               berInteger(version) + berString(community) + ber(pdu, body + ber(kSnmpSequence, list)));
}

SnmpName profileCell(uint32_t column, uint32_t row)
{
    SnmpName name = kTable;
    name.insert(name.end(), {column, 1, row});
    return name;
}

void addProfileRow(SnmpTable& table, uint32_t row, const std::string& fileName, int32_t profileClass,
                   int32_t location)
{
    table[profileCell(1, row)] = berInteger(row);
    table[profileCell(2, row)] = berInteger(location);
    table[profileCell(3, row)] = berString("Profile " + std::to_string(row));
    table[profileCell(4, row)] = berString(fileName);
    table[profileCell(5, row)] = berInteger(profileClass);
    table[profileCell(6, row)] = berInteger(0);
    table[profileCell(7, row)] = berInteger(3);
}

SnmpMessage answerFrom(const SnmpTable& table, const SnmpMessage& request)
{
    SnmpMessage answer = request;
    answer.pdu = kSnmpResponse;
    const SnmpName& asked = request.variables.at(0).name;
    auto found = request.pdu == kSnmpGet ? table.find(asked) : table.upper_bound(asked);
    if (found != table.end()) {
        answer.variables = {{found->first, found->second}};
    } else {
        answer.variables = {{asked, ber(kSnmpNull, "")}};
        answer.errorStatus = 2;
        answer.errorIndex = 1;
    }
    return answer;
}

SnmpAgent::SnmpAgent(Script script)
    : script_(std::move(script)), socket_(boundSocket("127.0.0.1", 0)),
      otherPort_(boundSocket("127.0.0.1", 0)), port_(portOf(socket_))
{
    otherAddress_ = boundSocket("127.0.0.2", port_);
    thread_ = std::thread(&SnmpAgent::serve, this);
}

SnmpAgent::SnmpAgent(const SnmpTable& table)
    : SnmpAgent(
          [table](SnmpAgent& agent, const SnmpMessage& request) { agent.send(answerFrom(table, request)); })
{
}

SnmpAgent::~SnmpAgent()
{
    ending_ = true;
    thread_.join();
    close(socket_);
    close(otherPort_);
    close(otherAddress_);
}

void SnmpAgent::serve()
{
    while (!ending_) {
        pollfd ready{socket_, POLLIN, 0};
        if (poll(&ready, 1, 20) <= 0)
            continue;
        char buffer[65536];
        sockaddr_in from{};
        socklen_t length = sizeof from;
        ssize_t size =
            recvfrom(socket_, buffer, sizeof buffer, 0, reinterpret_cast<sockaddr*>(&from), &length);
        if (size <= 0)
            continue;
        client_.assign(reinterpret_cast<char*>(&from), length);
        ++requests_;
        if (auto request = decoded({buffer, static_cast<size_t>(size)}))
            script_(*this, *request);
    }
}

void SnmpAgent::sendFrom(int socket, const std::string& datagram)
{
    sendto(socket, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(client_.data()),
           static_cast<socklen_t>(client_.size()));
}

void SnmpAgent::send(const std::string& datagram)
{
    sendFrom(socket_, datagram);
}

void SnmpAgent::sendFromOtherPort(const std::string& datagram)
{
    sendFrom(otherPort_, datagram);
}

void SnmpAgent::sendFromOtherAddress(const std::string& datagram)
{
    sendFrom(otherAddress_, datagram);
}
