#pragma once

#include <QByteArray>

/// Comments in JSON, which some agents accept in their settings.
namespace morvo::JsonComments {

/// `text` with each `// …` up to the line's end and each `/* … */` outside of strings replaced by a
/// blank. A comment that does not end stays, so that the text is no JSON. JSON itself comes out as
/// it is.
[[nodiscard]] QByteArray blanked(const QByteArray &text);

} // namespace morvo::JsonComments
