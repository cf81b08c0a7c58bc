// Everything norvane.dll offers, for code that wants it all at once.
#pragma once

#include "CFixSizeAlloc.h"
#include "DBaum.h"
#include "DynaArray.h"
#include "DynaArrayStatPtr.h"
#include "MemStack.h"
#include "NVApp.h"
#include "NVErrors.h"
#include "NVFormat.h"
#include "NVLanguage.h"
#include "NVDates.h"
#include "NVMsgBox.h"
#include "NVNumbers.h"
#include "NVStrings.h"
