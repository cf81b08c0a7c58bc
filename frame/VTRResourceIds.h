// Ids of the pictures in the library's resources (resources/vantrel.rc), for LoadImage with
// VTRGetInstance() or VantrelBase::AddIconToImageList.
#pragma once

enum : int {
    IDI_VTR_ROW_OPEN = 109,   // 16 x 16 minus box: an open tree row
    IDI_VTR_ROW_CLOSED = 110, // 16 x 16 plus box: a closed tree row
};
