#include "app/model/HelperTrouble.h"

#include <algorithm>

#include "app/texts/ExplanationTexts.h"

namespace tarnik {

std::string HelperTrouble::sentenceAt(WallTime now) const {
    namespace Texts = ExplanationTexts;
    const auto age = now - at;
    auto text = kind == Kind::stopped ? Texts::stopped(Texts::helper, times, last, age)
                                      : Texts::startFailed(Texts::helper, times, last, age);
    if (!nextTry) return text;
    const Seconds left = std::min(*nextTry - now, *nextTry - at);  // the clock may be set back
    return text + " " + (left > Seconds::zero() ? Texts::nextTry(left) : Texts::starting);
}

}  // namespace tarnik
