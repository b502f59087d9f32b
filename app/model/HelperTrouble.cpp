#include "app/model/HelperTrouble.h"

#include "app/texts/ExplanationTexts.h"

namespace tarnik {

std::string HelperTrouble::sentenceAt(WallTime now) const {
    namespace Texts = ExplanationTexts;
    const auto age = now - at;
    auto text = kind == Kind::stopped ? Texts::stopped(Texts::helper, times, last, age)
                                      : Texts::startFailed(Texts::helper, times, last, age);
    if (nextTry) text += " " + (*nextTry > now ? Texts::nextTry(*nextTry - now) : Texts::starting);
    return text;
}

}  // namespace tarnik
