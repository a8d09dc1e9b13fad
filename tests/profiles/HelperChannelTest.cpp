#include "ListFixture.h"

#include "profiles/HelperChannel.h"

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using HelperChannel = ListFixture;

TEST(ListFilePieces, AreCountedInUtf16UnitsAndNeverCutACharacter)
{
    const std::string palette = "\xF0\x9F\x8E\xA8"; // two units
    const std::pair<std::string, std::vector<size_t>> rows[] = {
        {"\xFF", {}},
        {std::string(90000, 'a'), {90000}},
        {std::string(180000, 'a') + "b", {90000, 90000, 1}},
        {std::string(89999, 'a') + "\xC3\xA9" + "b", {90001, 1}},
        {std::string(89998, 'a') + palette + "b", {90002, 1}},
        {std::string(89999, 'a') + palette + "b", {89999, 5}},
    };
    for (auto& [text, bytes] : rows) {
        std::vector<size_t> got;
        std::string joined;
        for (std::string_view piece : listFilePieces(text)) {
            got.push_back(piece.size());
            joined += piece;
        }
        EXPECT_EQ(got, bytes);
        EXPECT_TRUE(bytes.empty() || joined == text);
    }
}

TEST_F(HelperChannel, TheMarkerCountsAnywhereInTheReplyAndTheExitStatusDoesNot)
{
    const std::pair<const char*, bool> rows[] = {
        {"echo noise; echo \"x$1=TRUEy\"; echo more; exit 3", true},
        {"echo \"$1=TRUE\"; kill -9 $$", true},
        {"echo \"$1=FALSE\"; echo \"$1=TRUE\" >&2", false},
        {"printf '\\377%s=TRUE' \"$1\"", false},
        {"head -c 3000000 /dev/zero | tr '\\0' x; echo \"$1=TRUE\"", false},
    };
    for (auto& [answer, confirmed] : rows) {
        installHelper(answer);
        EXPECT_EQ(helperConfirms({"command_XPC", "a", ""}), confirmed) << answer;
    }
    EXPECT_TRUE(calls().starts_with("command_XPC|a||\n"));
    EXPECT_EQ(helperReply({"c", std::string(140000, 'x')}), std::nullopt) << "too long for the system";
}

TEST_F(HelperChannel, TheFirstFailedPieceStopsTheWriteAndNoRenameFollows)
{
    const std::string piece = "writeDataToPlistFile_XPC\n", rename = "writeDataToPlistFileRename_XPC\n";
    const std::string three(200000, 'a'), secondFails = "[ $n = 2 ] || echo \"$1=TRUE\"";
    const std::tuple<std::string, std::string, int32_t, std::string> rows[] = {
        {three, secondFails, -1, piece + piece},
        {three, kSayTrue, 0, piece + piece + piece + rename},
        {"\xFF", kSayTrue, 0, rename}, // no text, no pieces
        {"<?xml?>", secondFails, -1, piece + rename},
    };
    for (const auto& [text, answer, result, expected] : rows) {
        for (const char* log : {"commands", "calls"})
            std::filesystem::remove(sandbox / log);
        installHelper(answer);
        EXPECT_EQ(sendListFile(text), result);
        EXPECT_EQ(commands(), expected);
    }
    EXPECT_TRUE(
        calls().starts_with("writeDataToPlistFile_XPC|" + fileUrl(currentListPath()) + "|<?xml?>|\n"));
    EXPECT_EQ(fileUrl("/a b%2F?#\xC3\xA9/c"), "file:///a%20b%252F%3F%23%C3%A9/c");
}

TEST_F(HelperChannel, TheHelperInheritsNothingItShouldNot)
{
    installHelper("ls /proc/$$/fd | tr '\\n' ' '; grep -E 'Sig(Blk|Ign)' /proc/$$/status | "
                  "tr -s '\\t\\n' ' '; tr '\\0' ' ' </proc/$$/environ; readlink /proc/$$/fd/0");
    ScopedVariable secret("PDE_TEST_SECRET", "secret");
    const int inherited = open("/proc/self/exe", O_RDONLY), input = dup(STDIN_FILENO);
    dup2(inherited, STDIN_FILENO);
    sigset_t all, earlier;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, &earlier);
    auto pipeHandler = signal(SIGPIPE, SIG_IGN);
    std::string reply = helperReply({"c"}).value_or("");
    signal(SIGPIPE, pipeHandler);
    sigprocmask(SIG_SETMASK, &earlier, nullptr);
    dup2(input, STDIN_FILENO);
    close(input);
    close(inherited);
    auto has = [&](const char* words) { return reply.find(words) != std::string::npos; };
    EXPECT_TRUE(reply.starts_with("0 1 10 2 ")) << "10 is the script, opened by the shell: " << reply;
    EXPECT_TRUE(has("/dev/null\n") && has("SigBlk: 0000000000000000 ") && !has("secret")) << reply;
    // The C library itself sets its two internal signals aside.
    constexpr uint64_t kInternal = 3ull << 31;
    EXPECT_EQ(std::stoull(reply.substr(reply.find("SigIgn: ") + 8), nullptr, 16) & ~kInternal, 0u) << reply;
    EXPECT_EQ(reply.find("PDE_ROOT="), reply.rfind("PDE_ROOT="));
}

TEST_F(HelperChannel, AHostThatIgnoresItsChildrenOrHasClosedItsDescriptorsIsServedToo)
{
    installHelper(kSayTrue);
    const int lowest = dup(0);
    close(lowest);
    auto handler = signal(SIGCHLD, SIG_IGN);
    EXPECT_TRUE(helperConfirms({"c"}));
    signal(SIGCHLD, handler);
    for (int closed : {1, 2, 4, 7}) {
        auto ask = [&] {
            for (int file = 0; file < 3; ++file)
                if (closed & (1 << file))
                    close(file);
            _exit(helperConfirms({"c"}) ? 0 : 1);
        };
        EXPECT_EXIT(ask(), testing::ExitedWithCode(0), "") << "closed: " << closed;
    }
    EXPECT_EQ(dup(0), lowest) << "no descriptor is left open";
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left behind";
    close(lowest);
}
