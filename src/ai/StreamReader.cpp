#include "ai/StreamReader.h"

#include "ai/ChatRecords.h"
#include "frame/RecordCodec.h"
#include "frame/Text.h"

#include <QUtf8StringView>

namespace nimbrelle {

QStringList StreamReader::read(QByteArrayView bytes)
{
    QStringList pieces;
    for (const QByteArray &line : m_lines.read(bytes)) {
        const QString piece = pieceOf(line);
        if (!piece.isEmpty())
            pieces.append(piece);
    }
    return pieces;
}

QStringList StreamReader::finish()
{
    const QString piece = pieceOf(m_lines.finish().value_or(QByteArray()));
    return piece.isEmpty() ? QStringList() : QStringList(piece);
}

QString StreamReader::pieceOf(const QByteArray &line)
{
    constexpr QByteArrayView prefix("data:");
    if (m_isDone || !line.startsWith(prefix))
        return {};
    const QString event = trimmedBlanks(QString::fromUtf8(line.sliced(prefix.size())));
    if (event == u"[DONE]") {
        m_isDone = true;
        return {};
    }
    const auto chunk = decode<StreamChunk>(event.toUtf8());
    if (!chunk || chunk->choices.isEmpty())
        return {};
    return chunk->choices.first().delta.content.value_or(QString());
}

bool ErrorBodyReader::completesWith(const QByteArray &bytes)
{
    if (bytes.isEmpty()) {
        m_text.append(m_lines.finish().value_or(QByteArray()));
        return true;
    }
    for (const QByteArray &line : m_lines.read(bytes)) {
        m_text.append(line);
        if (isEnough())
            return true;
    }
    m_read += bytes.size();
    if (m_read > largestErrorBody)
        m_text.append(textFromCutUtf8(m_lines.finish().value_or(QByteArray())).toUtf8());
    return m_read > largestErrorBody;
}

bool ErrorBodyReader::isEnough() const
{
    constexpr qsizetype enoughCharacters = 200;
    // A character takes at least one byte, which spares counting most texts.
    return m_text.size() > enoughCharacters && characterCount(QString::fromUtf8(m_text)) > enoughCharacters;
}

QString ErrorBodyReader::text() const
{
    return textFromUtf8(m_text);
}

QString textFromUtf8(const QByteArray &bytes)
{
    return QUtf8StringView(bytes).isValidUtf8() ? QString::fromUtf8(bytes) : QString();
}

QString textFromCutUtf8(QByteArray bytes)
{
    const auto isInsideCharacter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    while (!bytes.isEmpty() && isInsideCharacter(bytes.back()))
        bytes.chop(1);
    bytes.chop(1);
    return textFromUtf8(bytes);
}

} // namespace nimbrelle
