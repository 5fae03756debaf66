#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace vpc {

/// Reads numbers from a text file, one after the other.
///
/// Each scan gives what fscanf with the conversion it names gives in the "C" locale: the same
/// value to the last bit, the same success or failure, and the same characters consumed. It does
/// not depend on the process locale and is many times faster than fscanf.
///
/// The scanner reads ahead in large blocks, so the position of the C stream means nothing while
/// a scanner is in use. It does not own the stream.
class TextScanner {
public:
    /// The most characters that Peek can show.
    static constexpr std::size_t maxPeek = 4096;

    /// Reads `file` from its current position; a null file is like an empty one.
    explicit TextScanner(std::FILE* file = nullptr) { Attach(file); }

    /// Forgets what was read and starts at the current position of `file`.
    void Attach(std::FILE* file);

    /// "%lf". On failure `value` keeps what it held.
    bool ScanDouble(double& value);
    /// `count` times "%lf", up to the first that fails. Returns how many did not.
    std::size_t ScanDoubles(double* values, std::size_t count);
    /// "%d". On failure `value` keeps what it held.
    bool ScanInt(int& value);
    /// "%llu". On failure `value` keeps what it held.
    bool ScanUnsigned(unsigned long long& value);

    /// Skips white space; false at the end of the text.
    bool SkipWhiteSpace();
    /// Skips blanks up to the end of the line or of the text; false where something else stands
    /// before it.
    bool EndsLine() { return *cursor_ == '\n' || *cursor_ == '\r' || EndsLineBehindBlanks(); }
    /// The characters ahead, at most `count` and maxPeek of them; fewer at the end of the text.
    /// Valid until the next call.
    std::string_view Peek(std::size_t count);
    /// The system's reason (errno) for which the text ended before the file did; 0 where there is
    /// none.
    int SystemError() const { return systemError_; }
    /// Characters consumed since Attach.
    unsigned long long Position() const {
        return charactersRead_ - static_cast<unsigned long long>(end_ - cursor_);
    }
    /// Where the last `words` words that were consumed begin, or the part of them that is still in
    /// memory.
    unsigned long long PositionBefore(unsigned long long words) const;
    /// After a scan that failed: the position where what it could not read begins. This may lie
    /// before Position, and is the end of the text where nothing was left to read.
    unsigned long long FailedAt() const { return failedAt_; }

private:
    static constexpr int endOfText = -1;

    /// A sign and the digits of an integer; `magnitude` is all ones when it does not fit.
    struct Integer {
        bool negative = false;
        bool overflow = false;
        unsigned long long magnitude = 0;
    };

    bool ScanInteger(Integer& integer);
    bool EndsLineBehindBlanks();
    /// Goes to where a scan of any kind begins, which may fail there; false at the end of the text.
    /// Cold, like what is noted of faults, so that it stays out of the loops that read points.
    [[gnu::cold]] bool BeginScan();
    /// False if no number was read (`numberEnd` is null), and if the number touches the end of the
    /// block and may go on in the next one.
    bool IsWhole(const char* numberEnd) const {
        return numberEnd != nullptr && (numberEnd != end_ || atEnd_);
    }
    bool ScanAnyDouble(double& value);
    bool CollectDigits(int c);
    bool CollectWord(std::string_view rest);
    bool ConvertToken(double& value) const;

    int Get() {
        if (cursor_ == end_ && !Refill()) return endOfText;
        return static_cast<unsigned char>(*cursor_++);
    }
    /// Takes back the character that the last Get gave.
    void Unget(int c) {
        if (c != endOfText) --cursor_;
    }
    /// Moves what is left to the front of the buffer and fills the rest; false at the end.
    bool Refill();
    void EnsureAhead(std::size_t count) {
        if (static_cast<std::size_t>(end_ - cursor_) < count && !atEnd_) Refill();
    }

    std::FILE* file_ = nullptr;
    /// A little larger than the text in it: zeros follow the text, so that a loop over digits needs
    /// no test for the end.
    std::unique_ptr<char[]> buffer_;
    const char* cursor_ = nullptr;
    const char* end_ = nullptr;
    bool atEnd_ = false;
    int systemError_ = 0;
    unsigned long long charactersRead_ = 0;
    unsigned long long failedAt_ = 0;
    std::string token_;
};

}  // namespace vpc
