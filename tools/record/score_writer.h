#pragma once
// The file that a score is written to while a show runs.
//
// A process of its own does the writing: a card that stalls holds no frame up, and when the program
// ends in whatever way, what was played until then is written. When the disk is full the file ends
// with the last whole line that it had room for, and the show goes on.

#include <sys/types.h>

#include <string>
#include <string_view>

namespace maker {

class ScoreWriter {
public:
    // Throws ToolError when there is such a file, or none can be made. The caller ignores SIGPIPE.
    explicit ScoreWriter(const std::string& path);
    ~ScoreWriter();
    ScoreWriter(const ScoreWriter&) = delete;
    ScoreWriter& operator=(const ScoreWriter&) = delete;

    // Whole lines. Never waits: when they cannot be taken the score ends here.
    void write(std::string_view lines);
    // Everything is in the file. False when the score is not whole.
    bool finish();
    // There is nothing in it that anybody wants.
    void discard();

private:
    std::string path_;
    int line_ = -1;  // to the writer; -1: closed
    pid_t writer_ = -1;
    bool whole_ = true;
};

}  // namespace maker
