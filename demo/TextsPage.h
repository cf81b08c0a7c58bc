#pragma once

#include <windows.h>

// Fills a report list with examples of the utility library's texts.
void FillTextsList(HWND hList);
