#pragma once

/// Plays the program's click, and returns at once. Without the sound file or a
/// sound server it is silent, and while the desktop's event sounds are switched off.
/// The sound system is first touched by the first click.
void playClick();

class QString;
/// Where the click lies; until told, playClick() is silent. A missing file is no error.
void setClickFile(const QString &path);
