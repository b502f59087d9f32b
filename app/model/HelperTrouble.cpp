#include "app/model/HelperTrouble.h"

#include <algorithm>

#include "app/texts/ExplanationTexts.h"

namespace tarnik {

std::string HelperTrouble::sentenceAt(WallTime now) const {
    namespace Texts = ExplanationTexts;
    const Texts::FailedChild helper{.name = Texts::helper, .times = times, .age = now - at};
    auto text = kind == Kind::stopped ? Texts::stopped(helper, last, Language::ofPerson)
                                      : Texts::startFailed(helper, last, Language::ofPerson);
    if (isRunning) return text + " " + translated(Texts::isRunningAgain);
    if (!nextTry) return text;
    const Seconds left = std::min(*nextTry - now, *nextTry - at);  // the clock may be set back
    return text + " " +
           (left > Seconds::zero()
                ? Texts::nextTry(std::chrono::ceil<std::chrono::seconds>(left), Language::ofPerson)
                : translated(Texts::starting));
}

}  // namespace tarnik
