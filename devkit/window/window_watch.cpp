// Watches the windows of an X server. On request it closes a window as a window manager does.
//
// Prints JSON lines. "watching": the program has started. "mapped": a window has appeared; the line has the
// time on the steady clock in milliseconds, title, process, position and size. "ground": that window has a
// background. "content": that window has content. Both are checked every millisecond. "unmapped": a window
// has disappeared. Commands on standard input: "close ID" asks that window to close, and "picture FILE"
// writes the screen to a PNG file. Exits at the end of standard input.
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include "devkit/window/LineProtocol.h"

namespace {

struct Free {
    void operator()(void* owned) const { std::free(owned); }
};
template <typename T>
using Owned = std::unique_ptr<T, Free>;

double nowMs() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// A window that is mapped and has no content yet.
struct Empty {
    xcb_window_t window;
    std::uint16_t width;
    double since;
    bool hasGround = false;
};

constexpr double longestEmptyMs = 1000;
constexpr std::uint16_t stripHeight = 64;  // the top of a window contains its first text

class WindowWatch {
public:
    WindowWatch() : x_(xcb_connect(nullptr, nullptr)) {}
    ~WindowWatch() { xcb_disconnect(x_); }
    WindowWatch(const WindowWatch&) = delete;
    WindowWatch& operator=(const WindowWatch&) = delete;

    bool works() const { return xcb_connection_has_error(x_) == 0; }
    int descriptor() const { return xcb_get_file_descriptor(x_); }

    void start() {
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(x_)).data;
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(x_, screen_->root, XCB_CW_EVENT_MASK, &events);
        protocols_ = atom("WM_PROTOCOLS");
        deleteWindow_ = atom("WM_DELETE_WINDOW");
        title_ = atom("_NET_WM_NAME");
        process_ = atom("_NET_WM_PID");
        devkit::say({{"watching", true}});
    }

    void takeEvents() {
        while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(x_)}) {
            const double at = nowMs();
            if ((event->response_type & 0x7f) == XCB_MAP_NOTIFY) {
                mapped(reinterpret_cast<xcb_map_notify_event_t*>(event.get())->window, at);
            } else if ((event->response_type & 0x7f) == XCB_UNMAP_NOTIFY) {
                const auto id = reinterpret_cast<xcb_unmap_notify_event_t*>(event.get())->window;
                devkit::say({{"unmapped", static_cast<qint64>(id)}});
            }
        }
    }

    bool awaitsContent() const { return empty_.has_value(); }

    // Checks the content of the window that was mapped last.
    void checkContent() {
        const auto asked = xcb_get_image(x_, XCB_IMAGE_FORMAT_Z_PIXMAP, empty_->window, 0, 0, empty_->width,
                                         stripHeight, ~0U);
        const Owned<xcb_get_image_reply_t> answer{xcb_get_image_reply(x_, asked, nullptr)};
        const double at = nowMs();
        if (!answer || at > empty_->since + longestEmptyMs) return empty_.reset();
        const std::span pixels(reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(answer.get())),
                               std::size_t{empty_->width} * stripHeight);
        const auto is = [first = pixels.front()](std::uint32_t pixel) { return pixel == first; };
        const bool hasContent = !std::ranges::all_of(pixels, is);
        // A window without a background shows the black root window.
        if (!empty_->hasGround && (hasContent || (pixels.front() & 0xFF'FF'FF) != 0)) {
            empty_->hasGround = true;
            devkit::say({{"ground", static_cast<qint64>(empty_->window)}, {"at", at}});
        }
        if (!hasContent) return;
        devkit::say({{"content", static_cast<qint64>(empty_->window)}, {"at", at}});
        empty_.reset();
    }

    void obey(const std::string& line) {
        if (line.starts_with("close ")) {
            close(static_cast<xcb_window_t>(std::stoul(line.substr(6))));
        } else if (line.starts_with("picture ")) {
            const auto file = QString::fromStdString(line.substr(8));
            devkit::say({{"picture", file}, {"written", picture().save(file)}});
        }
        xcb_flush(x_);
    }

private:
    xcb_atom_t atom(const char* name) {
        const auto asked = xcb_intern_atom(x_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
        const Owned<xcb_intern_atom_reply_t> answer{xcb_intern_atom_reply(x_, asked, nullptr)};
        return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    QByteArray property(xcb_window_t window, xcb_atom_t name) {
        const auto asked = xcb_get_property(x_, 0, window, name, XCB_ATOM_ANY, 0, 256);
        const Owned<xcb_get_property_reply_t> answer{xcb_get_property_reply(x_, asked, nullptr)};
        if (!answer) return {};
        return {static_cast<const char*>(xcb_get_property_value(answer.get())),
                xcb_get_property_value_length(answer.get())};
    }

    void mapped(xcb_window_t window, double at) {
        const auto asked = xcb_get_geometry(x_, window);
        const Owned<xcb_get_geometry_reply_t> place{xcb_get_geometry_reply(x_, asked, nullptr)};
        if (!place) return;  // gone again
        std::uint32_t pid = 0;
        const auto owner = property(window, process_);
        if (owner.size() == sizeof pid) std::memcpy(&pid, owner.constData(), sizeof pid);
        devkit::say({{"mapped", static_cast<qint64>(window)},
                     {"at", at},
                     {"title", QString::fromUtf8(property(window, title_))},
                     {"pid", static_cast<qint64>(pid)},
                     {"bounds", QJsonArray{place->x, place->y, place->width, place->height}}});
        if (place->height >= stripHeight) empty_ = {.window = window, .width = place->width, .since = at};
    }

    void close(xcb_window_t window) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = protocols_;
        message.data.data32[0] = deleteWindow_;
        message.data.data32[1] = XCB_CURRENT_TIME;
        xcb_send_event(x_, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
    }

    QImage picture() {
        const auto width = screen_->width_in_pixels;
        const auto height = screen_->height_in_pixels;
        const auto asked =
            xcb_get_image(x_, XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, 0, 0, width, height, ~0U);
        const Owned<xcb_get_image_reply_t> answer{xcb_get_image_reply(x_, asked, nullptr)};
        if (!answer) return {};
        return QImage(xcb_get_image_data(answer.get()), width, height, qsizetype{4} * width,
                      QImage::Format_RGB32)
            .copy();
    }

    xcb_connection_t* x_;
    xcb_screen_t* screen_ = nullptr;
    std::optional<Empty> empty_;
    xcb_atom_t protocols_{}, deleteWindow_{}, title_{}, process_{};
};

}  // namespace

int main() {
    WindowWatch watch;
    if (!watch.works()) {
        std::cerr << "no X server\n";
        return EXIT_FAILURE;
    }
    watch.start();
    devkit::StandardInput commands;
    pollfd waited[] = {{STDIN_FILENO, POLLIN, 0}, {watch.descriptor(), POLLIN, 0}};
    for (;;) {
        watch.takeEvents();  // including events that arrived with a reply
        if (!watch.works() || ::poll(waited, 2, watch.awaitsContent() ? 1 : -1) < 0) return EXIT_FAILURE;
        if (watch.awaitsContent()) watch.checkContent();
        if ((waited[0].revents & (POLLIN | POLLHUP)) == 0) continue;
        if (!commands.read([&](const std::string& line) { watch.obey(line); })) return EXIT_SUCCESS;
    }
}
