#include "app/model/IntentHandling.h"

namespace tarnik {

void performIntent(const WindowIntent& intent, const std::string& pasted, AppModel& model) {
    using Kind = WindowIntent::Kind;
    switch (intent.kind) {
        case Kind::connectPasted: return model.connect(pasted, AppModel::Replacing::no);
        case Kind::editLink: return model.dismissLinkMessage();
        case Kind::connectOffer:
            if (const auto offer = model.state().replaceOffer)
                model.connect(*offer, AppModel::Replacing::yes);
            return;
        case Kind::keepCurrent: return model.keepCurrentConnection();
        case Kind::confirmPairing: return model.confirmPairing();
        case Kind::cancelPairing: return model.cancelPairing();
        case Kind::finishPairing: return model.pairingFinished();
        case Kind::requestSwitch: return model.request(intent.which);
    }
}

}  // namespace tarnik
