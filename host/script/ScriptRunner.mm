#include "Script.h"
#include "ScriptCommands.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <optional>
#include <poll.h>
#include <unistd.h>

static const NSTimeInterval kIdle = 0.01, kBusy = 0.0005;

/// Reads the lines and carries them out.
@interface ScriptRunner : NSObject
{
    DialogController* dialog_;
    int file_;
    bool atEnd_;
    std::string unread_;    ///< bytes that are not yet a whole line
    std::string open_;      ///< the line that is being carried out and is not answered yet
    NSWindow* modalBefore_; ///< the modal window when that line began
    int depth_;             ///< lines that are being carried out, one inside the modal loop of another
    bool failed_;
    NSTimer* timers_[3];
}
@end

@implementation ScriptRunner

- (instancetype)initWithDialog:(DialogController*)dialog file:(int)file
{
    self = [super init];
    dialog_ = dialog;
    file_ = file;
    return self;
}

/// The next turn, in whatever mode the run loop is then. A mode keeps its timers until it is looked at, and
/// modal or tracking loops hardly come: each has one timer at a time.
- (void)tickAfter:(NSTimeInterval)delay
{
    NSString* const modes[] = {NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode};
    for (size_t i = 0; i < std::size(modes); ++i) {
        if ([timers_[i] isValid])
            continue;
        [timers_[i] release];
        timers_[i] = [[NSTimer timerWithTimeInterval:delay
                                              target:self
                                            selector:@selector(tick:)
                                            userInfo:nil
                                             repeats:NO] retain];
        [[NSRunLoop currentRunLoop] addTimer:timers_[i] forMode:modes[i]];
    }
}

/// The next line, if one has come.
- (std::optional<std::string>)nextLine
{
    for (;;) {
        size_t end = unread_.find('\n');
        if (end != std::string::npos || (atEnd_ && !unread_.empty())) {
            std::string line = unread_.substr(0, end);
            unread_.erase(0, end == std::string::npos ? end : end + 1);
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            return line;
        }
        pollfd input = {file_, POLLIN, 0};
        if (atEnd_ || poll(&input, 1, 0) <= 0)
            return std::nullopt;
        char buffer[4096];
        ssize_t count = read(file_, buffer, sizeof buffer);
        if (count > 0)
            unread_.append(buffer, static_cast<size_t>(count));
        else
            atEnd_ = count == 0 || errno != EINTR;
    }
}

- (void)answer:(const Json&)answer
{
    failed_ = failed_ || answer.contains("error");
    std::string text = answer.dump(-1, ' ', false, Json::error_handler_t::replace);
    printf("%s\n", text.c_str());
    fflush(stdout);
}

- (void)run:(const std::string&)line
{
    open_ = line;
    modalBefore_ = [NSApp modalWindow];
    ++depth_;
    Json answer;
    @autoreleasepool {
        answer = runScriptLine(dialog_, line);
    }
    --depth_;
    // A line that opened a modal window was answered when the next one came.
    if (!open_.empty())
        [self answer:answer];
    open_.clear();
    wakeModalLoop();
}

/// True when the script has to wait for a line that is being carried out: a pressed button runs the run loop
/// for a moment, and when its modal window is closed, a line that opened it comes back first.
- (bool)mustWait
{
    bool opened = modalWindowIsOpen() && [NSApp modalWindow] != modalBefore_;
    return depth_ > 0 && (open_.empty() ? !modalWindowIsOpen() : !opened);
}

- (void)tick:(NSTimer*)timer
{
    [timer invalidate];
    // The next turn is asked for first: this line may open a modal loop and not come back.
    [self tickAfter:unread_.empty() ? kIdle : kBusy];
    if ([self mustWait]) {
        wakeModalLoop();
        return;
    }
    if (!open_.empty()) {
        [self answer:answerOfOpenLine(dialog_, open_)];
        open_.clear();
    }
    std::optional<std::string> line = [self nextLine];
    if (!line && atEnd_)
        [self finish];
    if (line && !line->empty() && line->front() != '#')
        [self run:*line];
}

- (void)finish
{
    if (depth_ == 0)
        [dialog_ terminatePanel];
    if (![dialog_ writeSettings]) {
        fprintf(stderr, "printdialog: the print settings cannot be written\n");
        failed_ = true;
    }
    exit(failed_ ? EXIT_FAILURE : EXIT_SUCCESS);
}

@end

int openScript(const std::string& file)
{
    int script = file == "-" ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (script < 0)
        fprintf(stderr, "printdialog: %s: cannot be read\n", file.c_str());
    return script;
}

void driveByScript(DialogController* dialog, int script)
{
    [[[ScriptRunner alloc] initWithDialog:dialog file:script] tickAfter:0];
}
