#pragma once

namespace tarnik {

// Owns a descriptor and closes it once.
//
// A caller of get() borrows the number for the length of one call.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : fd_(fd) {}
    UniqueFd(UniqueFd&& other) noexcept : fd_(other.release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd() { reset(); }

    int get() const { return fd_; }
    explicit operator bool() const { return fd_ >= 0; }

    // Releases the descriptor without closing it.
    int release() {
        const int fd = fd_;
        fd_ = -1;
        return fd;
    }

    // Closes the owned descriptor and takes ownership of `fd`. Preserves errno.
    void reset(int fd = -1);

    // Returns a second descriptor for the same open file, close-on-exec and above 2. On failure returns an
    // empty UniqueFd and sets errno.
    static UniqueFd duplicate(int fd);

private:
    int fd_ = -1;
};

}  // namespace tarnik
