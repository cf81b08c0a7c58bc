#include "Screenshot.h"

#include <wincodec.h>

namespace {
// Releases a COM interface at scope end.
template <class T> struct ComPtr {
    T* p = nullptr;
    ~ComPtr() {
        if (p)
            p->Release();
    }
    T** operator&() { return &p; }
    T* operator->() const { return p; }
};

struct ScreenDC {
    HDC hdc = GetDC(nullptr);
    ~ScreenDC() { ReleaseDC(nullptr, hdc); }
};
struct MemDC {
    HDC hdc;
    explicit MemDC(HDC ref) : hdc(CreateCompatibleDC(ref)) {}
    ~MemDC() { DeleteDC(hdc); }
};
struct Bitmap {
    HBITMAP h = nullptr;
    ~Bitmap() {
        if (h)
            DeleteObject(h);
    }
};
} // namespace

bool SaveWindowScreenshot(HWND hWnd, wchar_t const* lpszPngPath) {
    RECT rc;
    if (!GetWindowRect(hWnd, &rc))
        return false;
    int cx = rc.right - rc.left, cy = rc.bottom - rc.top;
    ScreenDC screen;
    MemDC mem(screen.hdc);
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof(bi.bmiHeader);
    bi.bmiHeader.biWidth = cx;
    bi.bmiHeader.biHeight = -cy; // top-down rows, as WIC expects
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    Bitmap bmp;
    bmp.h = CreateDIBSection(screen.hdc, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bmp.h)
        return false;
    HGDIOBJ old = SelectObject(mem.hdc, bmp.h);
    BOOL copied = BitBlt(mem.hdc, 0, 0, cx, cy, screen.hdc, rc.left, rc.top, SRCCOPY);
    SelectObject(mem.hdc, old);
    if (!copied)
        return false;

    ComPtr<IWICImagingFactory> factory;
    ComPtr<IWICStream> stream;
    ComPtr<IWICBitmapEncoder> encoder;
    ComPtr<IWICBitmapFrameEncode> frame;
    WICPixelFormatGUID format = GUID_WICPixelFormat32bppBGR;
    HRESULT hr = CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                  IID_IWICImagingFactory, reinterpret_cast<void**>(&factory));
    if (SUCCEEDED(hr))
        hr = factory->CreateStream(&stream);
    if (SUCCEEDED(hr))
        hr = stream->InitializeFromFilename(lpszPngPath, GENERIC_WRITE);
    if (SUCCEEDED(hr))
        hr = factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder);
    if (SUCCEEDED(hr))
        hr = encoder->Initialize(stream.p, WICBitmapEncoderNoCache);
    if (SUCCEEDED(hr))
        hr = encoder->CreateNewFrame(&frame, nullptr);
    if (SUCCEEDED(hr))
        hr = frame->Initialize(nullptr);
    if (SUCCEEDED(hr))
        hr = frame->SetSize(cx, cy);
    if (SUCCEEDED(hr))
        hr = frame->SetPixelFormat(&format);
    if (SUCCEEDED(hr))
        hr = frame->WritePixels(cy, cx * 4, cx * cy * 4, static_cast<BYTE*>(bits));
    if (SUCCEEDED(hr))
        hr = frame->Commit();
    if (SUCCEEDED(hr))
        hr = encoder->Commit();
    return SUCCEEDED(hr);
}
