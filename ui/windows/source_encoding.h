#pragma once
// From the bytes of a source file to its text and back, so that what was not edited comes out as it went in.

#include <QByteArray>
#include <QString>
#include <QStringConverter>

// How the lines of a file end.
enum EOL_FORMAT : int { EOL_WINDOWS = 0, EOL_UNIX = 1, EOL_MAC = 2, EOL_MIXED = 3 };

struct SOURCE_ENCODING {
  QStringConverter::Encoding Codec = QStringConverter::Utf8;
  bool bMark = false;  // the file begins with a byte order mark

  bool operator==(const SOURCE_ENCODING&) const = default;
};

// By the byte order mark; without one UTF-8, or UTF-16 where every other byte is 0. What is not valid as that is
// Latin-1, in which every byte has a meaning.
QString DecodeSource(const QByteArray& Bytes, SOURCE_ENCODING* pEncoding);
// False when the encoding has no way to write some character of the text; nothing is stored then.
bool EncodeSource(const QString& sText, const SOURCE_ENCODING& Encoding, QByteArray* pBytes);

// Format of the first ten line ends.
EOL_FORMAT DetectLineEnding(const QString& sText);
// A text with line feeds, with other line ends; EOL_MIXED leaves it as it is.
QString WithLineEnds(QString sText, EOL_FORMAT Format);
