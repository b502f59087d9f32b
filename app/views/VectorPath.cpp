#include "app/views/VectorPath.h"

#include <QByteArrayView>
#include <array>
#include <optional>

namespace tarnik {
namespace {

// Splits a text at its spaces.
class Words {
public:
    explicit Words(std::string_view text) : rest_(text) { skipSpace(); }

    bool atEnd() const { return rest_.empty(); }

    std::string_view next() {
        const auto length = std::min(rest_.find(' '), rest_.size());
        const auto word = rest_.substr(0, length);
        rest_.remove_prefix(length);
        skipSpace();
        return word;
    }

    template <std::size_t count>
    std::optional<std::array<QPointF, count>> points() {
        std::array<QPointF, count> points;
        for (auto& point : points) {
            const auto x = number();
            const auto y = number();
            if (!x || !y) return std::nullopt;
            point = QPointF(*x, *y);
        }
        return points;
    }

private:
    std::optional<double> number() {
        const auto word = next();
        bool fits = false;
        const double value =
            QByteArrayView(word.data(), static_cast<qsizetype>(word.size())).toByteArray().toDouble(&fits);
        return fits ? std::optional(value) : std::nullopt;
    }

    void skipSpace() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

    std::string_view rest_;
};

bool addStep(QPainterPath& path, std::string_view command, Words& words) {
    if (command == "Z") {
        path.closeSubpath();
        return true;
    }
    if (command == "C") {
        const auto curve = words.points<3>();
        if (curve) path.cubicTo((*curve)[0], (*curve)[1], (*curve)[2]);
        return curve.has_value();
    }
    const auto end = command == "M" || command == "L" ? words.points<1>() : std::nullopt;
    if (!end) return false;
    if (command == "M")
        path.moveTo(end->front());
    else
        path.lineTo(end->front());
    return true;
}

}  // namespace

QPainterPath vectorPath(std::string_view description) {
    QPainterPath path;
    Words words(description);
    while (!words.atEnd())
        if (const auto command = words.next(); !addStep(path, command, words)) return {};
    return path;
}

}  // namespace tarnik
