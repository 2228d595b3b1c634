#pragma once

// Everything a test needs to state the bytes of a font. Start at TestFont.h.

#include "Bytes.h"
#include "CffTable.h"
#include "CmapTables.h"
#include "GlyfTables.h"
#include "LayoutTables.h"
#include "MathTable.h"
#include "SfntBuilder.h"
#include "SfntTables.h"
#include "TestFont.h"
