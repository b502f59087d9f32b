#include "core/pairing/TerminalText.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace tarnik::TerminalText {

namespace {

constexpr unsigned char bell = 7;
constexpr unsigned char escape = 27;

constexpr bool isDropped(unsigned char byte) {
    return (byte < 32) & (byte != '\t') & (byte != '\n');  // branch-free, so the compiler can vectorise it
}

constexpr std::size_t blockBytes = 64;

// One mark per byte of a block: 1 if the byte is dropped, else 0.
struct Marks {
    std::array<unsigned char, blockBytes> of{};
    bool any = false;

    // The compiler vectorises this loop as long as it has no early exit.
    explicit Marks(const char* block) {
        unsigned char seen = 0;
        for (std::size_t i = 0; i < blockBytes; ++i) {
            of[i] = isDropped(static_cast<unsigned char>(block[i]));
            seen |= of[i];
        }
        any = seen != 0;
    }

    // Returns the marks as bits, with the first byte's mark in the lowest bit. Each multiplication packs
    // eight marks.
    std::uint64_t bits() const {
        std::uint64_t bits = 0;
        for (std::size_t at = 0; at < blockBytes; at += 8) {
            std::uint64_t eight = 0;
            std::memcpy(&eight, &of[at], sizeof eight);
            if constexpr (std::endian::native == std::endian::big) eight = std::byteswap(eight);
            bits |= ((eight * 0x0102040810204080U) >> 56U) << at;
        }
        return bits;
    }
};

// Cleans one piece of text into a buffer that is at least as large as the piece. Later output overwrites what
// copy() writes in excess, because the output never gets longer than the input read so far.
class Pass {
public:
    using State = Cleaner::State;

    Pass(State state, std::string_view text, char* out)
        : in_(text.data()), end_(in_ + text.size()), out_(out), state_(state) {}

    // Returns the end of the cleaned text.
    char* run() {
        resume();
        while (left() >= blockBytes + pieceBytes) cleanBlock();
        while (in_ != end_) cleanCharacter();
        return out_;
    }

    // Returns the kind of sequence that is incomplete at the end of the text.
    State state() const { return state_; }

private:
    static constexpr std::size_t pieceBytes = 16;

    std::size_t left() const { return static_cast<std::size_t>(end_ - in_); }

    // Continues the sequence that was incomplete at the end of the previous piece.
    void resume() {
        switch (std::exchange(state_, State::text)) {
            case State::text: return;
            case State::escape: return skipSequence();
            case State::controlSequence: return skipControlSequence();
            case State::systemCommand: return skipSystemCommand(' ');
            case State::systemCommandEscape: return skipSystemCommand(escape);
        }
    }

    // Cleans the next block, and skips the rest of a sequence that extends beyond the block.
    void cleanBlock() {
        const char* const block = in_;
        const Marks marks(block);
        if (!marks.any) return copy(blockBytes);

        const std::uint64_t dropped = marks.bits();
        for (std::uint64_t ahead = dropped; ahead != 0;) {
            copy(static_cast<std::size_t>(block + std::countr_zero(ahead) - in_));
            drop();
            const auto done = static_cast<std::size_t>(in_ - block);
            if (done >= blockBytes) return;
            ahead = dropped & (~std::uint64_t{0} << done);
        }
        copy(static_cast<std::size_t>(block + blockBytes - in_));
    }

    // Copies in pieces of pieceBytes, so up to pieceBytes more than `count` are written.
    void copy(std::size_t count) {
        std::size_t done = 0;
        do {
            std::memcpy(out_ + done, in_ + done, pieceBytes);
            done += pieceBytes;
        } while (done < count);
        in_ += count;
        out_ += count;
    }

    void cleanCharacter() {
        if (isDropped(static_cast<unsigned char>(*in_))) return drop();
        *out_++ = *in_++;
    }

    // Skips the control character at `in_` and the sequence that it starts.
    void drop() {
        if (next() == escape) skipSequence();
    }

    void skipSequence() {
        if (in_ == end_) {
            state_ = State::escape;
            return;
        }
        const unsigned char kind = next();
        if (kind == '[') {
            skipControlSequence();
        } else if (kind == ']') {
            skipSystemCommand(' ');
        } else if (kind >= 0x80) {
            skipContinuationBytes();
        }
    }

    void skipControlSequence() {
        while (in_ != end_) {
            const unsigned char byte = next();
            if (64 <= byte && byte <= 126) return;
        }
        state_ = State::controlSequence;
    }

    void skipSystemCommand(unsigned char previous) {
        while (in_ != end_) {
            const unsigned char byte = next();
            if (byte == bell || (byte == '\\' && previous == escape)) return;
            previous = byte;
        }
        state_ = previous == escape ? State::systemCommandEscape : State::systemCommand;
    }

    void skipContinuationBytes() {
        while (in_ != end_ && (static_cast<unsigned char>(*in_) & 0xC0U) == 0x80) ++in_;
    }

    unsigned char next() { return static_cast<unsigned char>(*in_++); }

    const char* in_;
    const char* end_;
    char* out_;
    State state_;
};

}  // namespace

std::string clean(std::string_view text) {
    std::string cleaned;
    Cleaner().append(text, cleaned);
    return cleaned;
}

void Cleaner::append(std::string_view piece, std::string& cleaned) {
    const std::size_t before = cleaned.size();
    cleaned.resize_and_overwrite(before + piece.size(), [&](char* out, std::size_t) {
        Pass pass(state_, piece, out + before);
        const char* const end = pass.run();
        state_ = pass.state();
        return static_cast<std::size_t>(end - out);
    });
}

}  // namespace tarnik::TerminalText
