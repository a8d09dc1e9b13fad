#include "ListFixture.h"

#include "profiles/HelperChannel.h"

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class HelperChannel : public ListFixture {};

size_t openDescriptors()
{
    std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

const std::string kPiece = "writeDataToPlistFile_XPC", kRename = "writeDataToPlistFileRename_XPC";

} // namespace

TEST(ListFilePieces, AreCountedInUtf16UnitsAndNeverCutACharacter)
{
    struct {
        std::string text;
        std::vector<size_t> bytes;
    } rows[] = {
        {"", {}},
        {"\xFF", {}},
        {std::string(90000, 'a'), {90000}},
        {std::string(90001, 'a'), {90000, 1}},
        {std::string(180000, 'a') + "b", {90000, 90000, 1}},
        {std::string(89999, 'a') + "\xC3\xA9" + "b", {90001, 1}},
        {std::string(89998, 'a') + "\xF0\x9F\x8E\xA8" + "b", {90002, 1}},
        {std::string(89999, 'a') + "\xF0\x9F\x8E\xA8" + "b", {89999, 5}},
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

TEST(ListFilePieces, OfAFullListWithThreeByteNamesFitOneArgument)
{
    ProfileList full{};
    for (ProfileRecord& r : full.records)
        r = record(
            6,
            "\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5"
            "\xE6\x97\xA5\xE6\x97\xA5"),
        memcpy(r.ProfileName, r.FileName, kProfileNameSize);
    full.iNum = kProfileSlots;
    constexpr size_t kLongestArgument = 131071;
    std::string text = listFileText(full, full, full);
    EXPECT_GE(listFilePieces(text).size(), 5u);
    for (std::string_view piece : listFilePieces(text))
        EXPECT_LE(piece.size(), kLongestArgument);
}

TEST(FileUrl, EscapesWhatAPathMayHoldAndAUrlMayNot)
{
    EXPECT_EQ(fileUrl("/Library/Printers/x.plist"), "file:///Library/Printers/x.plist");
    EXPECT_EQ(fileUrl("/a b%2F?#\xC3\xA9/c"), "file:///a%20b%252F%3F%23%C3%A9/c");
}

TEST_F(HelperChannel, TheMarkerCountsAnywhereInTheReplyAndTheExitStatusDoesNot)
{
    struct {
        const char* answer;
        bool confirmed;
    } rows[] = {
        {"echo \"$1=TRUE\"", true},
        {"echo noise; echo \"x$1=TRUEy\"; echo more; exit 3", true},
        {"echo \"$1=TRUE\"; kill -9 $$", true},
        {"head -c 200000 /dev/zero | tr '\\0' x; echo \"$1=TRUE\"", true},
        {"echo \"$1=FALSE\"", false},
        {"echo \"$1=TRU\"", false},
        {"echo \"$1\" =TRUE", false},
        {"echo other=TRUE", false},
        {"echo \"$1=TRUE\" >&2", false},
        {"exit 0", false},
        {"printf '\\377%s=TRUE' \"$1\"", false},
        {"head -c 3000000 /dev/zero | tr '\\0' x; echo \"$1=TRUE\"", false},
        {"kill -9 $$", false},
    };
    for (auto& [answer, confirmed] : rows) {
        installHelper(answer);
        EXPECT_EQ(helperConfirms({"command_XPC", "a", ""}), confirmed) << answer;
    }
    EXPECT_EQ(arguments(1), "command_XPC|a||");
}

TEST_F(HelperChannel, AHelperThatCannotRunIsAFailure)
{
    EXPECT_EQ(helperReply({"c"}), std::nullopt) << "missing";
    EXPECT_EQ(VelPListIsAdminProfile(), 0);
    installHelper(kSayTrue);
    std::filesystem::permissions(helperExecutable(), std::filesystem::perms(0644));
    EXPECT_EQ(helperReply({"c"}), std::nullopt) << "not executable";
    std::filesystem::permissions(helperExecutable(), std::filesystem::perms(0755));
    EXPECT_EQ(helperReply({"c", std::string(140000, 'x')}), std::nullopt)
        << "an argument too long for the system";
    EXPECT_TRUE(commands().empty());
    std::filesystem::remove(helperExecutable());
    std::filesystem::create_directory(helperExecutable());
    EXPECT_EQ(helperReply({"c"}), std::nullopt) << "a folder";
    std::filesystem::remove(helperExecutable());
    sandbox.write(std::filesystem::path(helperExecutable()).lexically_relative(sandbox.path()), "\x7F"
                                                                                                "ELF");
    std::filesystem::permissions(helperExecutable(), std::filesystem::perms(0755));
    EXPECT_EQ(helperReply({"c"}), std::nullopt) << "not a program";
}

TEST_F(HelperChannel, TheFirstFailedPieceStopsTheWriteAndNoRenameFollows)
{
    std::string threePieces(200000, 'a');
    installHelper("[ $n = 2 ] || echo \"$1=TRUE\"");
    EXPECT_EQ(sendListFile(threePieces), -1);
    EXPECT_EQ(commands(), (std::vector<std::string>{kPiece, kPiece}));

    std::filesystem::remove(sandbox / "commands");
    installHelper(kSayTrue);
    EXPECT_EQ(sendListFile(threePieces), 0);
    EXPECT_EQ(commands(), (std::vector<std::string>{kPiece, kPiece, kPiece, kRename}));
    EXPECT_EQ(
        arguments(4).substr(arguments(4).size() - (kRename + "|" + fileUrl(currentListPath()) + "|").size()),
        kRename + "|" + fileUrl(currentListPath()) + "|");

    std::filesystem::remove(sandbox / "commands");
    EXPECT_EQ(sendListFile("\xFF"), 0) << "no text, no pieces: only the rename is sent";
    EXPECT_EQ(commands(), (std::vector<std::string>{kRename}));
    installHelper("[ \"$1\" = " + kRename + " ] || echo \"$1=TRUE\"");
    EXPECT_EQ(sendListFile("<?xml?>"), -1);
}

TEST_F(HelperChannel, TheHelperInheritsNothingItShouldNot)
{
    installHelper(
        "ls /proc/$$/fd | tr '\\n' ' '; grep -E 'Sig(Blk|Ign)' /proc/$$/status | tr -s '\\t\\n' ' '; "
        "tr '\\0' ' ' </proc/$$/environ; readlink /proc/$$/fd/0");
    ScopedVariable secret("PDE_TEST_SECRET", "secret");
    std::vector<int> many;
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    for (rlim_t i = 0; i + 100 < std::min<rlim_t>(limit.rlim_cur, 4000); ++i)
        many.push_back(open("/dev/null", O_RDONLY));
    sigset_t all, earlier;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, &earlier);
    auto pipeHandler = signal(SIGPIPE, SIG_IGN);
    std::optional<std::string> reply = helperReply({"c"});
    signal(SIGPIPE, pipeHandler);
    sigprocmask(SIG_SETMASK, &earlier, nullptr);
    for (int file : many)
        close(file);
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->find("secret"), std::string::npos);
    EXPECT_NE(reply->find("/dev/null\n"), std::string::npos) << *reply;
    EXPECT_NE(reply->find("SigBlk: 0000000000000000 "), std::string::npos) << *reply;
    // The C library itself sets its two internal signals aside.
    constexpr uint64_t kInternal = 3ull << 31;
    EXPECT_EQ(std::stoull(reply->substr(reply->find("SigIgn: ") + 8), nullptr, 16) & ~kInternal, 0u)
        << *reply;
    EXPECT_EQ(reply->substr(0, 9), "0 1 10 2 ") << "10 is the script, opened by the shell";
    EXPECT_EQ(reply->find("PDE_ROOT="), reply->rfind("PDE_ROOT="));
}

TEST_F(HelperChannel, AHostThatIgnoresItsChildrenOrHasNoDescriptorsIsServedToo)
{
    installHelper(kSayTrue);
    size_t before = openDescriptors();
    auto handler = signal(SIGCHLD, SIG_IGN);
    EXPECT_TRUE(helperConfirms({"c"}));
    signal(SIGCHLD, handler);
    for (int closed : {1, 2, 4, 7}) {
        pid_t child = fork();
        if (child == 0) {
            for (int file = 0; file < 3; ++file)
                if (closed & (1 << file))
                    close(file);
            _exit(helperConfirms({"c"}) ? 0 : 1);
        }
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << "closed: " << closed;
    }
    rlimit limit{}, none{};
    getrlimit(RLIMIT_NOFILE, &limit);
    none = limit;
    none.rlim_cur = 3;
    setrlimit(RLIMIT_NOFILE, &none);
    bool confirmed = helperConfirms({"c"});
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_FALSE(confirmed) << "no descriptor left";
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left behind";
}
