// Watermark.h - a mark on a seal's picture, made by the seal picture library.
#pragma once

// The work of the export of this name; its contract stands in TesmarkOpt.h.
namespace session {

int SetWatermarkOnEseal(const unsigned char* picture, int pictureLen, unsigned char* out,
                        int* outLen);

}  // namespace session
