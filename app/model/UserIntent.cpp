#include "app/model/UserIntent.h"

#include "app/model/AppModel.h"

namespace tarnik {

void performIntent(const UserIntent& intent, const std::string& pasted, AppModel& model) {
    using Kind = UserIntent::Kind;
    if (intent.kind != Kind::setStartAtLogin) model.loginItem().dismissFailure();
    switch (intent.kind) {
        case Kind::connectPasted: return model.pairing().connect(pasted);
        case Kind::dismissMessage: return model.pairing().dismissMessage();
        case Kind::connectOffer:
            if (intent.offer && intent.offer == model.state().replaceOffer)
                model.pairing().connect(*intent.offer, LinkPairing::Replacing::yes);
            return;
        case Kind::keepCurrent: return model.pairing().declineOffer();
        case Kind::confirmPairing: return model.pairing().confirm();
        case Kind::cancelPairing: return model.pairing().cancel();
        case Kind::finishPairing: return model.pairing().dismissOutcome();
        case Kind::requestSwitch: return model.request(intent.which);
        case Kind::retryInstall: return model.retryInstallation();
        case Kind::restartHelper:
            // A helper that has come back by itself is left alone.
            if (model.hasStarted() && std::holds_alternative<NodeStates::Restarting>(model.state().node))
                model.restartHelper([](bool) {});
            return;
        case Kind::pasteLink:
        case Kind::showLog:
        case Kind::copyDetails: return;
        case Kind::setStartAtLogin:
            return model.loginItem().choose(intent.startsAtLogin ? LoginItemChoice::on
                                                                 : LoginItemChoice::off);
    }
}

}  // namespace tarnik
