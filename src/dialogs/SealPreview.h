// SealPreview.h - the picture of a seal in the dialogs with a tree, and where it stands.
#pragma once

#include <string_view>

#include "platform/DialogWindow.h"

// The preview without a seal: its background alone.
void ClearPreview(platform::DialogWindow& window);

// Draws a GIF on the preview, once; the background stays where the picture is transparent. What is
// no GIF draws nothing.
void DrawPreview(platform::DialogWindow& window, std::string_view gif);

// In the middle of `area` at its own size, the halves of the margins rounded down, if the picture
// is smaller than it both ways; else all of it, and the proportions aren't kept.
platform::Rectangle PreviewPlace(const platform::Rectangle& area, int width, int height);
