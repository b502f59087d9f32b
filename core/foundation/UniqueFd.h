#pragma once

namespace tarnik {

// The one owner of a descriptor: closes it once, when it goes or is told to.
//
// Raw numbers taken with get() are borrowed, for the length of a call.
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

    // Gives up the ownership without closing.
    int release() {
        const int fd = fd_;
        fd_ = -1;
        return fd;
    }

    // Closes what is held and takes `fd`. Leaves errno as it was.
    void reset(int fd = -1);

    // A second descriptor for the same open file, close-on-exec and above 2; none with errno set on failure.
    static UniqueFd duplicate(int fd);

private:
    int fd_ = -1;
};

}  // namespace tarnik
