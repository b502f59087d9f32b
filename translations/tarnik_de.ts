<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>tarnik</name>
    <message>
        <extracomment>WindowTexts::alreadyRunning</extracomment>
        <source>tarnik is already running</source>
        <translation>tarnik läuft bereits</translation>
    </message>
    <message>
        <extracomment>WindowTexts::offerHeading</extracomment>
        <source>This Mac is already connected to an tarnik account.</source>
        <translation>Dieser Mac ist bereits mit einem Konto bei tarnik verbunden.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::offerText</extracomment>
        <source>The link you opened is for connecting a Mac. Connect this Mac to the account that sent it instead? Its current connection ends. Or keep things as they are.</source>
        <translation>Der geöffnete Link verbindet einen Mac. Möchten Sie diesen Mac stattdessen mit dem Konto verbinden, das den Link gesendet hat? Die jetzige Verbindung endet dann. Oder lassen Sie alles, wie es ist.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::offerConnect</extracomment>
        <source>Connect to the new account</source>
        <translation>Mit neuem Konto verbinden</translation>
    </message>
    <message>
        <extracomment>WindowTexts::offerKeep</extracomment>
        <source>Keep the current one</source>
        <translation>Jetziges behalten</translation>
    </message>
    <message>
        <extracomment>WindowTexts::confirmHeading</extracomment>
        <source>Connect this Mac?</source>
        <translation>Diesen Mac verbinden?</translation>
    </message>
    <message>
        <extracomment>WindowTexts::confirmText</extracomment>
        <source>Connect only if you asked for this link: tarnik will be able to run commands and work in apps on this Mac.</source>
        <translation>Verbinden Sie nur, wenn Sie diesen Link angefordert haben: tarnik kann dann auf diesem Mac Befehle ausführen und in Apps arbeiten.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::readingLink</extracomment>
        <source>Reading the link…</source>
        <translation>Link wird gelesen …</translation>
    </message>
    <message>
        <extracomment>WindowTexts::connecting</extracomment>
        <source>Connecting…</source>
        <translation>Verbindung wird hergestellt …</translation>
    </message>
    <message>
        <extracomment>WindowTexts::pairingConnected</extracomment>
        <source>Connected. You can go back to your chat.</source>
        <translation>Verbunden. Sie können zu Ihrem Chat zurückkehren.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::pairingEnded</extracomment>
        <source>That didn't connect. Ask tarnik for a new link and open it again.</source>
        <translation>Das hat nicht geklappt. Bitten Sie tarnik um einen neuen Link und öffnen Sie ihn.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::connect</extracomment>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <extracomment>WindowTexts::cancel</extracomment>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <extracomment>WindowTexts::done, WindowTexts::succeededName</extracomment>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <extracomment>WindowTexts::linkHeading</extracomment>
        <source>Connect this Mac</source>
        <translation>Diesen Mac verbinden</translation>
    </message>
    <message>
        <extracomment>WindowTexts::linkText</extracomment>
        <source>Open the link tarnik sent you in your chat and click “Open in tarnik”, or paste the link here.</source>
        <translation>Öffnen Sie den Link von tarnik in Ihrem Chat und klicken Sie auf „Open in tarnik“, oder fügen Sie ihn hier ein.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::linkContinue</extracomment>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <extracomment>WindowTexts::paste</extracomment>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <extracomment>WindowTexts::stepChat</extracomment>
        <source>Your chat</source>
        <translation>Ihr Chat</translation>
    </message>
    <message>
        <extracomment>WindowTexts::stepLink</extracomment>
        <source>The link</source>
        <translation>Der Link</translation>
    </message>
    <message>
        <extracomment>WindowTexts::stepConnected</extracomment>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <extracomment>WindowTexts::switchesHeading</extracomment>
        <source>So tarnik can work in your apps</source>
        <translation>Damit tarnik in Ihren Apps arbeiten kann</translation>
    </message>
    <message>
        <extracomment>WindowTexts::switchesText</extracomment>
        <source>Turn on these two switches for tarnik. It works in the background, in its own windows, and leaves your cursor alone.</source>
        <translation>Schalten Sie beides für tarnik ein. Es arbeitet im Hintergrund, in eigenen Fenstern, und nie mit Ihrem Mauszeiger.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::turnOn</extracomment>
        <source>Turn On…</source>
        <translation>Einschalten …</translation>
    </message>
    <message>
        <extracomment>WindowTexts::detailsTitle</extracomment>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <extracomment>WindowTexts::detailsCollecting</extracomment>
        <source>tarnik is collecting the details. This can take some seconds.</source>
        <translation>tarnik stellt die Details zusammen. Das kann einige Sekunden dauern.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::detailsText</extracomment>
        <source>This is what will be copied. Links, keys, addresses and names are hidden. Look through it before you send it to anybody.</source>
        <translation>Dies wird kopiert. Links, Schlüssel, Adressen und Namen sind verborgen. Sehen Sie den Text durch, bevor Sie ihn weitergeben.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::detailsCopied</extracomment>
        <source>The details are copied. You can paste them now.</source>
        <translation>Die Details sind kopiert. Sie können sie jetzt einfügen.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::logNotOpened</extracomment>
        <source>tarnik couldn't open the log.</source>
        <translation>tarnik konnte das Protokoll nicht öffnen.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::logPlace</extracomment>
        <source>The helper's log is at {path}. It is there as soon as the helper has written something.</source>
        <translation>Das Protokoll des Hilfsprogramms liegt unter {path}. Es entsteht, sobald das Hilfsprogramm etwas schreibt.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::copy</extracomment>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <extracomment>WindowTexts::close</extracomment>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <extracomment>WindowTexts::ok</extracomment>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <extracomment>WindowTexts::computerName</extracomment>
        <source>This computer</source>
        <translation>Dieser Computer</translation>
    </message>
    <message>
        <extracomment>WindowTexts::stepsName</extracomment>
        <source>The steps: the link in your chat, then tarnik, then connected</source>
        <translation>Die Schritte: der Link in Ihrem Chat, dann tarnik, dann verbunden</translation>
    </message>
    <message>
        <extracomment>WindowTexts::pasteName</extracomment>
        <source>Paste the link</source>
        <translation>Link einfügen</translation>
    </message>
    <message>
        <extracomment>WindowTexts::linkFieldName</extracomment>
        <source>Link from tarnik</source>
        <translation>Link von tarnik</translation>
    </message>
    <message>
        <extracomment>WindowTexts::terminalName</extracomment>
        <source>What tarnik's helper says</source>
        <translation>Ausgabe des Hilfsprogramms von tarnik</translation>
    </message>
    <message>
        <extracomment>WindowTexts::lastLinesName</extracomment>
        <source>The last lines that tarnik's helper wrote</source>
        <translation>Die letzten Zeilen des Hilfsprogramms von tarnik</translation>
    </message>
    <message>
        <extracomment>WindowTexts::detailsName</extracomment>
        <source>Details of the report</source>
        <translation>Details des Berichts</translation>
    </message>
    <message>
        <extracomment>WindowTexts::busyName</extracomment>
        <source>Working</source>
        <translation>In Arbeit</translation>
    </message>
    <message>
        <extracomment>WindowTexts::downloadName</extracomment>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <extracomment>WindowTexts::problemName</extracomment>
        <source>Problem</source>
        <translation>Problem</translation>
    </message>
    <message>
        <extracomment>WindowTexts::pointerName</extracomment>
        <source>Below</source>
        <translation>Weiter unten</translation>
    </message>
    <message>
        <extracomment>WindowTexts::confirmPrompt</extracomment>
        <source>Read what tarnik's helper says, then choose Connect or Cancel.</source>
        <translation>Lesen Sie, was das Hilfsprogramm von tarnik ausgibt, und wählen Sie dann „Verbinden“ oder „Abbrechen“.</translation>
    </message>
    <message>
        <extracomment>WindowTexts::switchIsOn</extracomment>
        <source>{switch} is on</source>
        <translation>{switch} ist eingeschaltet</translation>
    </message>
    <message>
        <extracomment>WindowTexts::switchIsOff</extracomment>
        <source>{switch} is off</source>
        <translation>{switch} ist ausgeschaltet</translation>
    </message>
    <message>
        <extracomment>WindowTexts::turnOnSwitch</extracomment>
        <source>Turn on {switch}</source>
        <translation>Einschalten: {switch}</translation>
    </message>
    <message>
        <extracomment>MachineTexts::connected</extracomment>
        <source>This Mac is connected to your tarnik.</source>
        <translation>Dieser Mac ist mit Ihrem tarnik verbunden.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::reconnecting</extracomment>
        <source>Reconnecting…</source>
        <translation>Verbindung wird wiederhergestellt …</translation>
    </message>
    <message>
        <extracomment>MachineTexts::gettingReady</extracomment>
        <source>Getting ready…</source>
        <translation>Wird vorbereitet …</translation>
    </message>
    <message>
        <extracomment>MachineTexts::stopping</extracomment>
        <source>Stopping…</source>
        <translation>Wird beendet …</translation>
    </message>
    <message>
        <extracomment>MachineTexts::takesSeconds</extracomment>
        <source>This usually takes a few seconds.</source>
        <translation>Das dauert meist nur einige Sekunden.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::stoppingText</extracomment>
        <source>tarnik's helper finishes its work first. This usually takes a few seconds, and at most 40.</source>
        <translation>Das Hilfsprogramm von tarnik schließt zuerst seine Arbeit ab. Das dauert meist nur einige Sekunden, höchstens 40.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::tryNow</extracomment>
        <source>Try Now</source>
        <translation>Jetzt versuchen</translation>
    </message>
    <message>
        <extracomment>MachineTexts::showLog</extracomment>
        <source>Show Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <extracomment>MachineTexts::copyDetails</extracomment>
        <source>Copy Details</source>
        <translation>Details kopieren</translation>
    </message>
    <message>
        <extracomment>MachineTexts::helperLabel</extracomment>
        <source>Helper</source>
        <translation>Hilfsprogramm</translation>
    </message>
    <message>
        <extracomment>MachineTexts::runningSince</extracomment>
        <source>Running since {time}</source>
        <translation>Läuft seit {time}</translation>
    </message>
    <message>
        <extracomment>MachineTexts::runningSinceVersion</extracomment>
        <source>Running since {time}, version {version}</source>
        <translation>Läuft seit {time}, Version {version}</translation>
    </message>
    <message>
        <extracomment>MachineTexts::starting</extracomment>
        <source>Starting…</source>
        <translation>Wird gestartet …</translation>
    </message>
    <message>
        <extracomment>MachineTexts::desktopLabel</extracomment>
        <source>Desktop control</source>
        <translation>Desktop-Zugriff</translation>
    </message>
    <message>
        <extracomment>MachineTexts::desktopReady</extracomment>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <extracomment>MachineTexts::desktopNeedsTwo</extracomment>
        <source>Needs two switches</source>
        <translation>Braucht zwei Schalter</translation>
    </message>
    <message>
        <extracomment>MachineTexts::desktopNeedsOne</extracomment>
        <source>Needs one more switch</source>
        <translation>Braucht noch einen Schalter</translation>
    </message>
    <message>
        <extracomment>MachineTexts::desktopStopped</extracomment>
        <source>Stopped; turn a switch off and on</source>
        <translation>Beendet; Schalter aus- und einschalten</translation>
    </message>
    <message>
        <extracomment>MachineTexts::desktopAbsent</extracomment>
        <source>Not part of this build</source>
        <translation>In diesem Build nicht enthalten</translation>
    </message>
    <message>
        <extracomment>MachineTexts::updatesLabel</extracomment>
        <source>Updates</source>
        <translation>Updates</translation>
    </message>
    <message>
        <extracomment>MachineTexts::updatesAutomatic</extracomment>
        <source>Installed automatically</source>
        <translation>Werden automatisch installiert</translation>
    </message>
    <message>
        <extracomment>MachineTexts::updateWaits</extracomment>
        <source>{version} waits for a quiet moment</source>
        <translation>{version} wartet auf eine Pause</translation>
    </message>
    <message>
        <extracomment>MachineTexts::twoSwitchesOff</extracomment>
        <source>Two switches are still off. Turn them on below.</source>
        <translation>Zwei Schalter sind noch aus. Schalten Sie sie unten ein.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::oneSwitchOff</extracomment>
        <source>One switch is still off. Turn on {switch} below.</source>
        <translation>Ein Schalter ist noch aus. Schalten Sie unten „{switch}“ ein.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::staysInMenuBar</extracomment>
        <source>You can close this window. tarnik stays in the menu bar.</source>
        <translation>Sie können dieses Fenster schließen. tarnik bleibt in der Menüleiste.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::staysInPanel</extracomment>
        <source>You can close this window. tarnik stays in the panel.</source>
        <translation>Sie können dieses Fenster schließen. tarnik bleibt in der Leiste.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::closingEnds</extracomment>
        <source>Closing this window ends the connection.</source>
        <translation>Wenn Sie dieses Fenster schließen, endet die Verbindung.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::setupText</extracomment>
        <source>tarnik is setting up its helper. This happens only once.</source>
        <translation>tarnik richtet sein Hilfsprogramm ein. Das geschieht nur einmal.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::setupBothSwitches</extracomment>
        <source>tarnik is setting up its helper. This happens only once. Meanwhile, you can turn on the two switches below.</source>
        <translation>tarnik richtet sein Hilfsprogramm ein. Das geschieht nur einmal. Sie können inzwischen unten die beiden Schalter einschalten.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::setupOneSwitch</extracomment>
        <source>tarnik is setting up its helper. This happens only once. Meanwhile, you can turn on the other switch below.</source>
        <translation>tarnik richtet sein Hilfsprogramm ein. Das geschieht nur einmal. Sie können inzwischen unten den anderen Schalter einschalten.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::setupNext</extracomment>
        <source>Next, you connect this Mac with the link from your chat.</source>
        <translation>Danach verbinden Sie diesen Mac mit dem Link aus Ihrem Chat.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::installFailed</extracomment>
        <source>tarnik couldn't install its helper.</source>
        <translation>tarnik konnte sein Hilfsprogramm nicht installieren.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::helperMissing</extracomment>
        <source>tarnik's helper isn't there any more.</source>
        <translation>Das Hilfsprogramm von tarnik ist nicht mehr da.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::helperMissingText</extracomment>
        <source>It was moved or deleted. Try Again installs it again.</source>
        <translation>Es wurde bewegt oder gelöscht. „Erneut versuchen“ installiert es erneut.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::homeUnusable</extracomment>
        <source>tarnik can't use the folder for its helper.</source>
        <translation>tarnik kann den Ordner für sein Hilfsprogramm nicht verwenden.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::homeUnusableText</extracomment>
        <source>Somebody set this folder for tarnik. Remove that setting or set another folder, then quit tarnik and open it again. If you don't know the setting, choose Copy Details and send them to the person who helps you.</source>
        <translation>Jemand hat diesen Ordner für tarnik festgelegt. Entfernen Sie die Einstellung oder wählen Sie einen anderen Ordner, dann beenden Sie tarnik und öffnen es erneut. Kennen Sie die Einstellung nicht, senden Sie mit „Details kopieren“ die Details an jemanden, der Ihnen hilft.</translation>
    </message>
    <message>
        <extracomment>MachineTexts::tryAgain</extracomment>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <extracomment>LoginTexts::startAtLogin</extracomment>
        <source>Start at login</source>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <extracomment>LoginTexts::allowInSettings</extracomment>
        <source>Start at login: allow it in System Settings</source>
        <translation>Anmeldestart in den Systemeinstellungen erlauben</translation>
    </message>
    <message>
        <extracomment>LoginTexts::choiceFailed</extracomment>
        <source>Start at login didn't change. Try the system's settings.</source>
        <translation>Der Start bei der Anmeldung blieb unverändert. Nutzen Sie die Einstellungen des Systems.</translation>
    </message>
    <message>
        <extracomment>LoginTexts::lockedStartAtLogin</extracomment>
        <source>Start at login – set by your organisation</source>
        <translation>Bei der Anmeldung starten – von Ihrer Organisation festgelegt</translation>
    </message>
    <message>
        <extracomment>LinkTexts::checkingLink</extracomment>
        <source>Checking the link…</source>
        <translation>Link wird geprüft …</translation>
    </message>
    <message>
        <extracomment>LinkTexts::notALink</extracomment>
        <source>That doesn't look like a link from tarnik. Copy the whole link from your chat and paste it here.</source>
        <translation>Das sieht nicht nach einem Link von tarnik aus. Kopieren Sie den ganzen Link aus Ihrem Chat und fügen Sie ihn hier ein.</translation>
    </message>
    <message>
        <extracomment>LinkTexts::stillInstalling</extracomment>
        <source>tarnik's helper is still installing. Try again in a moment.</source>
        <translation>Das Hilfsprogramm von tarnik wird noch installiert. Versuchen Sie es gleich noch einmal.</translation>
    </message>
    <message>
        <extracomment>LinkTexts::pairingNotAllowed</extracomment>
        <source>Your organisation doesn't allow pairing this computer with an account.</source>
        <translation>Ihre Organisation erlaubt es nicht, diesen Computer mit einem Konto zu koppeln.</translation>
    </message>
    <message>
        <extracomment>LinkTexts::replacingNotAllowed</extracomment>
        <source>Your organisation doesn't allow pairing this computer with another account.</source>
        <translation>Ihre Organisation erlaubt es nicht, diesen Computer mit einem anderen Konto zu koppeln.</translation>
    </message>
    <message>
        <extracomment>LinkTexts::linkExpired</extracomment>
        <source>This link has expired or was already used. Ask tarnik for a new one.</source>
        <translation>Dieser Link ist abgelaufen oder verbraucht. Bitten Sie tarnik um einen neuen.</translation>
    </message>
    <message>
        <extracomment>PairingFailureTexts::notInstalled</extracomment>
        <source>tarnik's helper isn't installed on this Mac yet.</source>
        <translation>Das Hilfsprogramm von tarnik ist auf diesem Mac noch nicht installiert.</translation>
    </message>
    <message>
        <extracomment>PairingFailureTexts::busy</extracomment>
        <source>This Mac is already connecting with another link. Finish or cancel that one first.</source>
        <translation>Dieser Mac wird gerade mit einem anderen Link verbunden. Schließen Sie das zuerst ab oder brechen Sie es ab.</translation>
    </message>
    <message>
        <extracomment>Switch::title</extracomment>
        <source>Accessibility</source>
        <translation>Bedienungshilfen</translation>
    </message>
    <message>
        <extracomment>Switch::why</extracomment>
        <source>Lets tarnik click and type in your apps, in the background.</source>
        <translation>Damit tarnik im Hintergrund in Ihren Apps klicken und tippen kann.</translation>
    </message>
    <message>
        <extracomment>Switch::title</extracomment>
        <source>Screen Recording</source>
        <translation>Bildschirmaufnahme</translation>
    </message>
    <message>
        <extracomment>Switch::why</extracomment>
        <source>Lets tarnik see the window it's working in.</source>
        <translation>Damit tarnik das Fenster sieht, in dem es arbeitet.</translation>
    </message>
    <message>
        <extracomment>SwitchSnapshot::staleHint</extracomment>
        <source>If tarnik already looks switched on in Accessibility, select it, remove it with −, then add /Applications/tarnik.app again and reopen tarnik.</source>
        <translation>Dort schon eingeschaltet? tarnik mit − entfernen, /Applications/tarnik.app wieder hinzufügen, tarnik neu öffnen.</translation>
    </message>
    <message>
        <extracomment>ExplanationTexts::helper</extracomment>
        <source>The helper</source>
        <translation>Das Hilfsprogramm</translation>
    </message>
    <message>
        <extracomment>ExplanationTexts::starting</extracomment>
        <source>It is starting.</source>
        <translation>Es wird gestartet.</translation>
    </message>
    <message>
        <extracomment>ExplanationTexts::isRunningAgain</extracomment>
        <source>It is running again.</source>
        <translation>Es läuft wieder.</translation>
    </message>
    <message numerus="yes">
        <extracomment>ExplanationTexts::childStopped; with the number 1: {child} stopped with {status}, {time} ago.</extracomment>
        <source>{child} stopped {count} times in a row, last with {status}, {time} ago.</source>
        <translation>
            <numerusform>{child} wurde vor {time} mit {status} beendet.</numerusform>
            <numerusform>{child} wurde {count}-mal in Folge beendet, zuletzt vor {time} mit {status}.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>ExplanationTexts::childNotStarted; with the number 1: {child} couldn't be started, {time} ago</extracomment>
        <source>{child} failed {count} times in a row. The last time it couldn't be started, {time} ago</source>
        <translation>
            <numerusform>{child} konnte vor {time} nicht gestartet werden</numerusform>
            <numerusform>{child} ist {count}-mal in Folge fehlgeschlagen. Zuletzt konnte es vor {time} nicht gestartet werden</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>ExplanationTexts::withReason</extracomment>
        <source>{sentence}: {reason}</source>
        <translation>{sentence}: {reason}</translation>
    </message>
    <message>
        <extracomment>ExplanationTexts::nextTryIn</extracomment>
        <source>Next try in {time}.</source>
        <translation>Nächster Versuch in {time}.</translation>
    </message>
    <message>
        <extracomment>ExplanationTexts::seconds</extracomment>
        <source>{count} s</source>
        <translation>{count} s</translation>
    </message>
    <message>
        <extracomment>ExplanationTexts::minutes</extracomment>
        <source>{count} min</source>
        <translation>{count} min</translation>
    </message>
    <message>
        <extracomment>ExplanationTexts::hours</extracomment>
        <source>{count} h</source>
        <translation>{count} Std.</translation>
    </message>
    <message numerus="yes">
        <extracomment>ExplanationTexts::days; with the number 1: {count} day</extracomment>
        <source>{count} days</source>
        <translation>
            <numerusform>{count} Tag</numerusform>
            <numerusform>{count} Tagen</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>FormatTexts::megabytes</extracomment>
        <source>{number} MB</source>
        <translation>{number} MB</translation>
    </message>
    <message>
        <extracomment>FormatTexts::partOf</extracomment>
        <source>{part} of {whole}</source>
        <translation>{part} von {whole}</translation>
    </message>
    <message>
        <extracomment>FailureTexts::tooBusy</extracomment>
        <source>This computer is too busy right now. Close some programs and try again.</source>
        <translation>Dieser Computer ist gerade zu stark ausgelastet. Schließen Sie einige Programme und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <extracomment>FailureTexts::diskFull</extracomment>
        <source>The disk is full. Free some space and try again.</source>
        <translation>Der Datenträger ist voll. Geben Sie Speicherplatz frei und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <extracomment>FailureTexts::notAllowed</extracomment>
        <source>tarnik isn't allowed to use a file or folder that it needs. Change its permissions and try again.</source>
        <translation>tarnik darf eine Datei oder einen Ordner, den es braucht, nicht verwenden. Ändern Sie die Zugriffsrechte und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <extracomment>FailureTexts::fileFailed</extracomment>
        <source>tarnik couldn't use a file or folder that it needs. Check that nothing else is in its place.</source>
        <translation>tarnik konnte eine Datei oder einen Ordner, den es braucht, nicht verwenden. Prüfen Sie, ob dort etwas anderes liegt.</translation>
    </message>
    <message>
        <extracomment>FailureTexts::programFailed</extracomment>
        <source>tarnik couldn't start a program that it needs. Check that the program is installed.</source>
        <translation>tarnik konnte ein Programm, das es braucht, nicht starten. Prüfen Sie, ob das Programm installiert ist.</translation>
    </message>
    <message>
        <extracomment>FailureTexts::downloadFailed</extracomment>
        <source>tarnik couldn't download its helper. Check your connection and try again.</source>
        <translation>tarnik konnte sein Hilfsprogramm nicht herunterladen. Prüfen Sie Ihre Verbindung und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <extracomment>FailureTexts::unpackFailed</extracomment>
        <source>The downloaded file is damaged, or the disk is full. Free some space and try again.</source>
        <translation>Die heruntergeladene Datei ist beschädigt, oder der Datenträger ist voll. Geben Sie Speicherplatz frei und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <extracomment>FailureTexts::releaseRefused</extracomment>
        <source>tarnik can't be sure that its helper is genuine, so nothing was installed. Try again later.</source>
        <translation>tarnik kann nicht sicher sein, dass sein Hilfsprogramm echt ist. Daher wurde nichts installiert. Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <extracomment>CauseTexts::line</extracomment>
        <source>Cause: {cause}</source>
        <translation>Ursache: {cause}</translation>
    </message>
    <message>
        <extracomment>CauseTexts::offline</extracomment>
        <source>This computer can't reach the server. Check whether it is online and whether a firewall blocks tarnik.</source>
        <translation>Dieser Computer erreicht den Server nicht. Prüfen Sie, ob er online ist und ob eine Firewall tarnik blockiert.</translation>
    </message>
    <message>
        <extracomment>CauseTexts::proxyLogin</extracomment>
        <source>The proxy of this network requires a name and a password. Add them to the proxy's address, or use another network.</source>
        <translation>Der Proxy dieses Netzwerks verlangt einen Namen und ein Passwort. Ergänzen Sie beides in der Adresse des Proxys oder verwenden Sie ein anderes Netzwerk.</translation>
    </message>
    <message>
        <extracomment>CauseTexts::captivePortal</extracomment>
        <source>This network may require a sign-in. Open a web page in your browser, sign in, and try again.</source>
        <translation>Vielleicht verlangt das Netzwerk eine Anmeldung. Melden Sie sich im Browser an und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <extracomment>CauseTexts::clock</extracomment>
        <source>The server's certificate isn't valid at this computer's date. Check the date and the time.</source>
        <translation>Das Zertifikat des Servers ist zum Datum dieses Computers nicht gültig. Prüfen Sie Datum und Uhrzeit.</translation>
    </message>
    <message>
        <extracomment>CauseTexts::untrustedCertificate</extracomment>
        <source>The server's certificate isn't trusted, so this network may read the connection. Use another network, or ask who runs this one.</source>
        <translation>Das Zertifikat des Servers ist nicht vertrauenswürdig. Dieses Netzwerk liest die Verbindung womöglich mit. Verwenden Sie ein anderes Netzwerk oder fragen Sie dessen Betreiber.</translation>
    </message>
    <message>
        <extracomment>CauseTexts::diskFull</extracomment>
        <source>The disk is full. Free some space.</source>
        <translation>Der Datenträger ist voll. Geben Sie Speicherplatz frei.</translation>
    </message>
    <message>
        <extracomment>CauseTexts::notAllowed</extracomment>
        <source>tarnik isn't allowed to use a file or folder that it needs. Change its permissions.</source>
        <translation>tarnik darf eine Datei oder einen Ordner, den es braucht, nicht verwenden. Ändern Sie die Zugriffsrechte.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::packageName</extracomment>
        <source>tarnik's helper</source>
        <translation>tarnik-Hilfsprogramm</translation>
    </message>
    <message>
        <extracomment>InstallTexts::runtimeStep</extracomment>
        <source>Downloading Node.js {version}…</source>
        <translation>Node.js {version} wird geladen …</translation>
    </message>
    <message>
        <extracomment>InstallTexts::packageStep</extracomment>
        <source>Downloading tarnik's helper…</source>
        <translation>Hilfsprogramm von tarnik wird geladen …</translation>
    </message>
    <message>
        <extracomment>InstallTexts::notAbsolute</extracomment>
        <source>The node folder must be a full path (starting with /), not {path}.</source>
        <translation>Der Node-Ordner muss ein vollständiger Pfad sein (der mit / beginnt), nicht {path}.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::reserved</extracomment>
        <source>The node folder can't be {path}, which holds other things. Pick a new or empty folder.</source>
        <translation>Der Node-Ordner kann nicht {path} sein, denn dort liegt anderes. Wählen Sie einen neuen oder leeren Ordner.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::overlapsDefault</extracomment>
        <source>The test node folder {path} can't be inside ~/.tarnik/node or contain it.</source>
        <translation>Der Test-Node-Ordner {path} darf weder in ~/.tarnik/node liegen noch diesen Ordner enthalten.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::notAFolder</extracomment>
        <source>{path} isn't a folder. Nothing was installed.</source>
        <translation>{path} ist kein Ordner. Es wurde nichts installiert.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::isALink</extracomment>
        <source>{path} is a link, and tarnik leaves links alone. Nothing was installed.</source>
        <translation>{path} ist ein Link, und tarnik lässt Links unberührt. Es wurde nichts installiert.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::holdsOtherFiles</extracomment>
        <source>{path} already holds files tarnik didn't put there. Move them out, then try again. Nothing was installed.</source>
        <translation>In {path} liegen bereits Dateien, die nicht von tarnik stammen. Verschieben Sie sie und versuchen Sie es dann erneut. Es wurde nichts installiert.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::wrongKey</extracomment>
        <source>the release is signed with key {key}, not this build's</source>
        <translation>die Version ist mit dem Schlüssel {key} signiert, nicht mit dem dieses Builds</translation>
    </message>
    <message>
        <extracomment>InstallTexts::noKey</extracomment>
        <source>this build carries no release key</source>
        <translation>dieser Build enthält keinen Schlüssel für Versionen</translation>
    </message>
    <message>
        <extracomment>InstallTexts::notJSON</extracomment>
        <source>the release file is not JSON</source>
        <translation>die Versionsdatei ist kein JSON</translation>
    </message>
    <message>
        <extracomment>InstallTexts::shape</extracomment>
        <source>the release file is not in the expected shape</source>
        <translation>die Versionsdatei hat nicht die erwartete Form</translation>
    </message>
    <message>
        <extracomment>InstallTexts::badSignature</extracomment>
        <source>the release signature does not verify</source>
        <translation>die Signatur der Version ist ungültig</translation>
    </message>
    <message>
        <extracomment>InstallTexts::wrongChannel</extracomment>
        <source>the stable file carries another channel</source>
        <translation>die Datei „stable“ gehört zu einem anderen Kanal</translation>
    </message>
    <message>
        <extracomment>InstallTexts::noArtifact</extracomment>
        <source>tarnik's helper isn't published for this Mac ({platform}) yet.</source>
        <translation>Das Hilfsprogramm von tarnik ist für diesen Mac ({platform}) noch nicht erschienen.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::download</extracomment>
        <source>Couldn't download {what}. Check your connection and try again.</source>
        <translation>„{what}“ konnte nicht heruntergeladen werden. Prüfen Sie Ihre Verbindung und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::checksum</extracomment>
        <source>{what} didn't match its signed release. Nothing was installed.</source>
        <translation>„{what}“ stimmt nicht mit der signierten Version überein. Es wurde nichts installiert.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::extract</extracomment>
        <source>Couldn't unpack tarnik's helper ({reason}). Nothing was installed.</source>
        <translation>Das Hilfsprogramm von tarnik konnte nicht entpackt werden ({reason}). Es wurde nichts installiert.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::notOurFolder</extracomment>
        <source>{path} isn't tarnik-node's own folder. Nothing was installed.</source>
        <translation>{path} ist kein eigener Ordner von tarnik-node. Es wurde nichts installiert.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::tooOld</extracomment>
        <source>tarnik's helper {version} is older than this Mac may install. Nothing was installed.</source>
        <translation>Das Hilfsprogramm {version} von tarnik ist älter, als dieser Mac installieren darf. Es wurde nichts installiert.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::notPublished</extracomment>
        <source>tarnik's helper isn't published for this Mac yet.</source>
        <translation>Das Hilfsprogramm von tarnik ist für diesen Mac noch nicht erschienen.</translation>
    </message>
    <message>
        <extracomment>InstallTexts::incomplete</extracomment>
        <source>tarnik's helper is missing a file. Nothing was installed.</source>
        <translation>Dem Hilfsprogramm von tarnik fehlt eine Datei. Es wurde nichts installiert.</translation>
    </message>
    <message>
        <extracomment>HttpTexts::emptyAnswer</extracomment>
        <source>The server sent an empty answer.</source>
        <translation>Der Server hat eine leere Antwort gesendet.</translation>
    </message>
    <message>
        <extracomment>HttpTexts::badStatus</extracomment>
        <source>The server answered with status {status}.</source>
        <translation>Der Server hat mit dem Status {status} geantwortet.</translation>
    </message>
    <message>
        <extracomment>HttpTexts::tooLarge</extracomment>
        <source>The server sent more than is allowed.</source>
        <translation>Der Server hat mehr gesendet, als erlaubt ist.</translation>
    </message>
    <message>
        <extracomment>HttpTexts::cutShort</extracomment>
        <source>The connection ended before everything had arrived.</source>
        <translation>Die Verbindung endete, bevor alles angekommen war.</translation>
    </message>
    <message>
        <extracomment>HttpTexts::stalled</extracomment>
        <source>The server didn't answer in time, or sent too slowly.</source>
        <translation>Der Server hat nicht rechtzeitig geantwortet oder zu langsam gesendet.</translation>
    </message>
    <message>
        <extracomment>HttpTexts::notSaved</extracomment>
        <source>The download couldn't be saved ({reason}).</source>
        <translation>Der Download konnte nicht gesichert werden ({reason}).</translation>
    </message>
    <message>
        <extracomment>HttpTexts::failed</extracomment>
        <source>The connection failed ({reason}).</source>
        <translation>Die Verbindung ist fehlgeschlagen ({reason}).</translation>
    </message>
    <message>
        <extracomment>HttpTexts::failedThroughProxy</extracomment>
        <source>The connection through the proxy {proxy} failed ({reason}).</source>
        <translation>Die Verbindung über den Proxy {proxy} ist fehlgeschlagen ({reason}).</translation>
    </message>
    <message>
        <extracomment>HttpTexts::proxyLogin</extracomment>
        <source>The proxy {proxy} requires a name and a password.</source>
        <translation>Der Proxy {proxy} verlangt einen Namen und ein Passwort.</translation>
    </message>
    <message>
        <extracomment>MenuTexts::openWindow, NoticeTexts::open</extracomment>
        <source>Open tarnik</source>
        <translation>tarnik öffnen</translation>
    </message>
    <message>
        <extracomment>MenuTexts::checkForUpdates</extracomment>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <extracomment>MenuTexts::quit</extracomment>
        <source>Quit tarnik</source>
        <translation>tarnik beenden</translation>
    </message>
    <message>
        <extracomment>NoticeTexts::installFailedTitle</extracomment>
        <source>tarnik couldn't install its helper</source>
        <translation>tarnik konnte sein Hilfsprogramm nicht installieren</translation>
    </message>
    <message>
        <extracomment>NoticeTexts::installFailedBody</extracomment>
        <source>Open tarnik to see why and to try again.</source>
        <translation>Öffnen Sie tarnik, um den Grund zu sehen und es erneut zu versuchen.</translation>
    </message>
    <message>
        <extracomment>NoticeTexts::helperAwayTitle</extracomment>
        <source>tarnik is not connected</source>
        <translation>tarnik ist nicht verbunden</translation>
    </message>
    <message>
        <extracomment>NoticeTexts::helperAwayBody</extracomment>
        <source>Its helper has not been running for a while. tarnik keeps trying to start it. Open tarnik to see why and what you can do.</source>
        <translation>Sein Hilfsprogramm läuft seit einer Weile nicht. tarnik versucht weiter, es zu starten. Öffnen Sie tarnik, um den Grund zu sehen und was Sie tun können.</translation>
    </message>
    <message>
        <extracomment>NoticeTexts::closedTitle</extracomment>
        <source>tarnik is still running</source>
        <translation>tarnik läuft weiter</translation>
    </message>
    <message>
        <extracomment>NoticeTexts::closedInMenuBar</extracomment>
        <source>You closed its window. To open it again or to quit, click the tarnik picture in the menu bar.</source>
        <translation>Sie haben das Fenster geschlossen. Um es wieder zu öffnen oder tarnik zu beenden, klicken Sie auf das tarnik-Symbol in der Menüleiste.</translation>
    </message>
    <message>
        <extracomment>NoticeTexts::closedInPanel</extracomment>
        <source>You closed its window. To open it again or to quit, click the tarnik picture in the panel.</source>
        <translation>Sie haben das Fenster geschlossen. Um es wieder zu öffnen oder tarnik zu beenden, klicken Sie auf das tarnik-Symbol in der Leiste.</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::differentBuild</extracomment>
        <source>This is a different build of tarnik</source>
        <translation>Dies ist ein anderer Build von tarnik</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::differentBuildBody</extracomment>
        <source>The tarnik in your Applications folder is a different build from this one, so this one is running from “{folder}” and the one in Applications is untouched.</source>
        <translation>tarnik in Ihrem Ordner „Programme“ ist ein anderer Build als dieser. Daher läuft dieser aus „{folder}“, und der in „Programme“ bleibt unverändert.</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::takeoverStuck</extracomment>
        <source>The older tarnik is still running</source>
        <translation>Das ältere tarnik läuft noch</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::takeoverStuckBody</extracomment>
        <source>An older tarnik is still running from your Applications folder and would not quit, so this newer one is running from “{folder}” for now. Quit tarnik from the menu bar at the top of your screen, then open the new one again.</source>
        <translation>Ein älteres tarnik läuft noch aus Ihrem Ordner „Programme“ und ließ sich nicht beenden. Daher läuft dieses neuere vorerst aus „{folder}“. Beenden Sie tarnik in der Menüleiste oben am Bildschirm und öffnen Sie dann das neue erneut.</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::moveIt</extracomment>
        <source>Move tarnik to Applications</source>
        <translation>Bewegen Sie tarnik in „Programme“</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::moveItBody</extracomment>
        <source>tarnik is running from “{folder}”, not your Applications folder, so the switches you turn on may not stick. Quit tarnik, drag it into your Applications folder in Finder, and open it from there.</source>
        <translation>tarnik läuft aus „{folder}“, nicht aus Ihrem Ordner „Programme“. Daher bleiben Schalter, die Sie einschalten, womöglich nicht erhalten. Beenden Sie tarnik, ziehen Sie es im Finder in den Ordner „Programme“ und öffnen Sie es dort.</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::temporaryCopy</extracomment>
        <source>tarnik is running from a temporary copy</source>
        <translation>tarnik läuft aus einer temporären Kopie</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::copyOfApplicationsBody</extracomment>
        <source>macOS is still running tarnik from a temporary copy instead of from your Applications folder, so the switches you turn on may not stick. Quit tarnik, drag it from Applications to your Desktop and back into Applications in Finder, then open it from there.</source>
        <translation>macOS startet tarnik immer noch aus einer temporären Kopie statt aus Ihrem Ordner „Programme“. Daher bleiben Schalter, die Sie einschalten, womöglich nicht erhalten. Beenden Sie tarnik, ziehen Sie es im Finder aus „Programme“ auf den Schreibtisch und zurück und öffnen Sie es dann dort.</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::copyOfFolderBody</extracomment>
        <source>macOS is still running tarnik from a temporary copy instead of from “{folder}”, so the switches you turn on may not stick. Quit tarnik, drag it into your Applications folder in Finder, and open it from there.</source>
        <translation>macOS startet tarnik immer noch aus einer temporären Kopie statt aus „{folder}“. Daher bleiben Schalter, die Sie einschalten, womöglich nicht erhalten. Beenden Sie tarnik, ziehen Sie es im Finder in den Ordner „Programme“ und öffnen Sie es dort.</translation>
    </message>
    <message>
        <extracomment>RelocationTexts::copyOfDownloadBody</extracomment>
        <source>macOS is still running tarnik from a temporary copy instead of from where you downloaded it, so the switches you turn on may not stick. Quit tarnik, drag it into your Applications folder in Finder, and open it from there.</source>
        <translation>macOS startet tarnik immer noch aus einer temporären Kopie statt von dort, wohin Sie es geladen haben. Daher bleiben Schalter, die Sie einschalten, womöglich nicht erhalten. Beenden Sie tarnik, ziehen Sie es im Finder in den Ordner „Programme“ und öffnen Sie es dort.</translation>
    </message>
    <message>
        <extracomment>ProgramTexts::homeInUse</extracomment>
        <source>Another tarnik uses the helper's folder {home}. Quit it first.</source>
        <translation>Ein anderes tarnik verwendet den Ordner {home} des Hilfsprogramms. Beenden Sie es zuerst.</translation>
    </message>
    <message>
        <extracomment>ProgramTexts::homeInUseByWindow</extracomment>
        <source>Another tarnik (process {process}, with a window) uses the helper's folder {home}. Use that one, or quit it first.</source>
        <translation>Ein anderes tarnik (Prozess {process}, mit Fenster) verwendet den Ordner {home} des Hilfsprogramms. Verwenden Sie jenes oder beenden Sie es zuerst.</translation>
    </message>
    <message>
        <extracomment>ProgramTexts::homeInUseByConsole</extracomment>
        <source>Another tarnik (process {process}, in a terminal) uses the helper's folder {home}. Type quit there first.</source>
        <translation>Ein anderes tarnik (Prozess {process}, in einem Terminal) verwendet den Ordner {home} des Hilfsprogramms. Geben Sie dort zuerst quit ein.</translation>
    </message>
    <message>
        <extracomment>ProgramTexts::homeInUseByService</extracomment>
        <source>Another tarnik (process {process}, in the background) uses the helper's folder {home}. End it with tarnik quit first.</source>
        <translation>Ein anderes tarnik (Prozess {process}, im Hintergrund) verwendet den Ordner {home} des Hilfsprogramms. Beenden Sie es zuerst mit tarnik quit.</translation>
    </message>
</context>
</TS>
