#pragma once

/// @file
/// Everything of the font service but FS_WindowsRecords.h, which brings <windows.h> on Windows.

#include <KWFontService17/FS_BaseFont.h>
#include <KWFontService17/FS_Error.h>
#include <KWFontService17/FS_Export.h>
#include <KWFontService17/FS_ExtraFontManager.h>
#include <KWFontService17/FS_FontFeatureSettings.h>
#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_Functions.h>
#include <KWFontService17/FS_GlyphBMP.h>
#include <KWFontService17/FS_GlyphBMPSetting.h>
#include <KWFontService17/FS_GlyphBMPStore.h>
#include <KWFontService17/FS_GlyphDrawInfo.h>
#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_MathConstants.h>
#include <KWFontService17/FS_MergeEmbeddedFonts.h>
#include <KWFontService17/FS_NewTextMetricEx.h>
#include <KWFontService17/FS_TTGlyphMap.h>
#include <KWFontService17/FS_Types.h>
#include <KWFontService17/GlyphIDArray.h>
#include <KWFontService17/GlyphIDArray2.h>
#include <KWFontService17/GlyphIDClassPair.h>
#include <KWFontService17/GlyphIDPosition.h>
