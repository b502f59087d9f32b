#include "app/desktop/WindowLanguage.h"

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <utility>

#include "app/texts/PseudoLanguage.h"
#include "app/texts/Translation.h"
#include "app/views/QtText.h"

// The build embeds the catalogues. The macro can't be used in a namespace.
static void openCatalogues() {
    Q_INIT_RESOURCE(translations);
}

namespace tarnik {
namespace {

constexpr const char* catalogueContext = "tarnik";
constexpr const char* checkedLanguage =
    "de";  // has all texts, so the languages for checks use its list of texts

QString catalogueOf(const QString& language) {
    return ":/translations/tarnik_" + language + ".qm";
}

bool isEnglish(const QLocale& locale) {
    return locale.language() == QLocale::English || locale.language() == QLocale::C;
}

// Loads a catalogue, which lives as long as the application. Returns nullptr if it is absent.
QTranslator* loadCatalogue(const QString& file, const QString& folder = {}) {
    auto* catalogue = new QTranslator(QCoreApplication::instance());
    return catalogue->load(file, folder) ? catalogue : nullptr;
}

std::string lookUp(const QTranslator& catalogue, std::string_view english, int count = -1) {
    return catalogue.translate(catalogueContext, std::string(english).c_str(), nullptr, count).toStdString();
}

Translator translatorOf(const QTranslator& catalogue) {
    return {.text = [&catalogue](std::string_view english) { return lookUp(catalogue, english); },
            .countedText =
                [&catalogue](const CountedText& english, std::int64_t count) {
                    return lookUp(catalogue, english.many, static_cast<int>(count));
                },
            .number = {},
            .timeOfDay = {},
            .date = {}};
}

Translator pseudoTranslator(const QTranslator& catalogue, PseudoLanguage language) {
    return {.text =
                [&catalogue, language](std::string_view english) {
                    return lookUp(catalogue, english).empty() ? "" : pseudoText(english, language);
                },
            .countedText =
                [language](const CountedText& english, std::int64_t count) {
                    return pseudoText(count == 1 ? english.one : english.many, language);
                },
            .number = {},
            .timeOfDay = {},
            .date = {}};
}

// The C locale has seconds in its times, so it keeps the form of Translation.
void setForms(Translator& translator, const QLocale& locale) {
    if (locale.language() == QLocale::C) return;
    translator.number = [locale](double number, int decimals) {
        return locale.toString(number, 'f', decimals).toStdString();
    };
    const auto local = [](WallTime time) {
        return QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(time));
    };
    translator.timeOfDay = [locale, local](WallTime time) {
        return locale.toString(local(time).time(), QLocale::ShortFormat).toStdString();
    };
    translator.date = [locale, local](WallTime time) {
        return locale.toString(local(time).date(), QLocale::ShortFormat).toStdString();
    };
}

void setLanguage(const QString& language, const QLocale& forms) {
    Translator translator;
    if (!language.isEmpty()) {
        if (const auto* catalogue = loadCatalogue(catalogueOf(language)))
            translator = translatorOf(*catalogue);
        if (auto* toolkit =
                loadCatalogue("qtbase_" + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(toolkit);
        QGuiApplication::setLayoutDirection(QLocale(language).textDirection());
    }
    setForms(translator, forms);
    setTranslator(std::move(translator));
}

// Returns false if this build has no catalogues.
bool setPseudoLanguage(PseudoLanguage language) {
    const auto* catalogue = loadCatalogue(catalogueOf(checkedLanguage));
    if (!catalogue) return false;
    setTranslator(pseudoTranslator(*catalogue, language));
    if (language == PseudoLanguage::rightToLeft) QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    return true;
}

}  // namespace

bool setWindowLanguage(const std::optional<std::string>& name) {
    openCatalogues();
    if (!name) {
        setLanguage(catalogueFor(QLocale::system().uiLanguages()), QLocale::system());
        return true;
    }
    const auto asked = qtText(*name);
    if (name == "pseudo") return setPseudoLanguage(PseudoLanguage::accented);
    if (name == "rtl") return setPseudoLanguage(PseudoLanguage::rightToLeft);
    if (name == "en" || QFile::exists(catalogueOf(asked))) {
        setLanguage(name == "en" ? QString() : asked, QLocale(asked));
    } else {
        return false;
    }
    return true;
}

// A catalogue may be for a language or for a language in one country.
QString catalogueFor(const QStringList& preferred) {
    openCatalogues();
    for (const auto& name : preferred) {
        const QLocale locale(name);
        if (isEnglish(locale)) return {};
        for (const auto& language : {locale.name(), locale.name().section('_', 0, 0)})
            if (QFile::exists(catalogueOf(language))) return language;
    }
    return {};
}

}  // namespace tarnik
