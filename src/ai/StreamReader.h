#pragma once

#include "ai/LineReader.h"

#include <QStringList>

namespace nimbrelle {

/// Reads the body of a streamed answer: "data:" lines, each with a JSON chunk, up to "[DONE]". A line that
/// can't be read is passed over.
class StreamReader {
public:
    /// The pieces of text that `bytes` complete, each as the AI sent it and never empty.
    QStringList read(QByteArrayView bytes);
    /// To be called when the body ends: the last line may lack its end.
    QStringList finish();

    /// "[DONE]" was read; what follows it is passed over.
    bool isDone() const { return m_isDone; }

private:
    QString pieceOf(const QByteArray &line);

    LineReader m_lines;
    bool m_isDone = false;
};

/// Of a body with an error a sentence is shown; beyond this it is not read, in bytes.
inline constexpr qsizetype largestErrorBody = 64 * 1024;

/// Reads the body of an error response, line by line, until it is longer than what is shown of it.
class ErrorBodyReader {
public:
    /// Takes the next bytes of the body, empty at its end; true when the text is complete.
    bool completesWith(const QByteArray &bytes);
    /// The lines without their ends; empty when they are not UTF-8.
    QString text() const;

private:
    bool isEnough() const;

    LineReader m_lines;
    QByteArray m_text;
    qsizetype m_read = 0;
};

/// `bytes` as text; empty when they are not UTF-8.
QString textFromUtf8(const QByteArray &bytes);
/// The same of a text that was cut off anywhere: without its last character.
QString textFromCutUtf8(QByteArray bytes);

} // namespace nimbrelle
