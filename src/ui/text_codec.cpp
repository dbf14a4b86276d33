#include "ui/text_codec.h"

#include <algorithm>
#include <array>

#include <QByteArrayView>
#include <QStringDecoder>
#include <QStringEncoder>

namespace kestrel {
namespace {

constexpr const char* japaneseCodePage = "windows-31j";
// What the converters put in the place of a character that the code page lacks.
constexpr char16_t substitute = 0x1A;

bool isAscii(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Bytes that Japanese text has and Latin-1 text has not: one of 0x81 to 0x9F, with which kana and
// the common kanji begin, or three half-width katakana in a row. Without them an accented letter
// and the letter behind it would pass for a rare kanji.
bool looksJapanese(std::string_view bytes) {
    int katakanaRun = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        katakanaRun = byte >= 0xA1 && byte <= 0xDF ? katakanaRun + 1 : 0;
        if ((byte >= 0x81 && byte <= 0x9F) || katakanaRun >= 3)
            return true;
    }
    return false;
}

enum class Ending { Complete, Cut };

// Empty where the bytes are not of this encoding. A field of fixed width may end inside a
// character, which is then left out; without a whole character before it that would be no evidence.
QString decode(const char* encoding, std::string_view bytes, Ending ending) {
    const auto flags =
        ending == Ending::Cut ? QStringConverter::Flag::Default : QStringConverter::Flag::Stateless;
    QStringDecoder decoder(encoding, flags);
    const QString text =
        decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    const bool replaced =
        text.contains(QChar::ReplacementCharacter) || text.contains(QChar(substitute));
    const bool evidence = std::ranges::any_of(text, [](QChar c) { return c.unicode() >= 0x80; });
    return decoder.hasError() || replaced || !evidence ? QString() : text;
}

// Marks, embeddings, overrides and isolates of the direction of reading, and the line ends of
// Unicode.
bool turnsReading(char16_t c) {
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x2028 && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

QString signOf(char16_t c) {
    constexpr char16_t firstPicture = 0x2400;  // of the pictures of control characters, in order
    constexpr char16_t deletePicture = 0x2421;
    if (c < 0x20)
        return {QChar(static_cast<char16_t>(firstPicture + c))};
    if (c == 0x7F)
        return {QChar(deletePicture)};
    return QStringLiteral("<U+%1>").arg(static_cast<uint>(c), 4, 16, QLatin1Char('0')).toUpper();
}

std::string encode(QStringEncoder encoder, const QString& text) {
    const QByteArray bytes = encoder(text);
    return encoder.hasError() ? std::string() : bytes.toStdString();
}

}  // namespace

QString toWindow(std::string_view bytes) {
    const auto size = static_cast<qsizetype>(bytes.size());
    if (isAscii(bytes))
        return QString::fromLatin1(bytes.data(), size);
    const bool japanese = looksJapanese(bytes);
    for (const Ending ending : {Ending::Complete, Ending::Cut}) {
        if (QString text = decode("UTF-8", bytes, ending); !text.isEmpty())
            return text;
        if (QString text = decode(japaneseCodePage, bytes, ending); japanese && !text.isEmpty())
            return text;
    }
    return QString::fromLatin1(bytes.data(), size);
}

QString asSigns(const QString& text) {
    QString result;
    for (const QChar c : text) {
        const char16_t code = c.unicode();
        const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
        if (code != u'\n' && (control || turnsReading(code)))
            result += signOf(code);
        else
            result += c;
    }
    return result;
}

QString toSigns(std::string_view bytes) {
    return asSigns(toWindow(bytes));
}

std::string fromWindow(const QString& text) {
    const std::array candidates = {
        encode(QStringEncoder(japaneseCodePage), text),
        encode(QStringEncoder(QStringEncoder::Latin1), text),
    };
    for (const std::string& bytes : candidates) {
        if (!bytes.empty() && toWindow(bytes) == text)
            return bytes;
    }
    return text.toStdString();
}

}  // namespace kestrel
