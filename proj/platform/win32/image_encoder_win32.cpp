#include <windows.h>
// windows.h comes first, and gdiplus.h last: the ones below need the types of those above.
#include <objbase.h>
#include <objidl.h>
#include <propidl.h>

#include <gdiplus.h>

#include <type_traits>

#include "platform/image_encoder.h"

namespace corvane::platform {
namespace {

namespace gdi = Gdiplus::DllExports;

constexpr int32_t kPixelSize = 4;
constexpr wchar_t kPngEncoder[] = L"{557cf406-1a04-11d3-9a73-0000f81ef32e}";

// GDI+ for the length of one call: every thread that encodes has a start of its own.
class GdiplusSession {
 public:
  GdiplusSession() {
    const Gdiplus::GdiplusStartupInput input;
    started_ = Gdiplus::GdiplusStartup(&token_, &input, nullptr) == Gdiplus::Ok;
  }
  ~GdiplusSession() {
    if (started_) Gdiplus::GdiplusShutdown(token_);
  }
  GdiplusSession(const GdiplusSession&) = delete;
  GdiplusSession& operator=(const GdiplusSession&) = delete;

 private:
  ULONG_PTR token_ = 0;
  bool started_ = false;
};

struct Close {
  void operator()(Gdiplus::GpImage* image) const { gdi::GdipDisposeImage(image); }
  void operator()(Gdiplus::GpGraphics* graphics) const { gdi::GdipDeleteGraphics(graphics); }
  void operator()(IStream* stream) const { stream->Release(); }
  void operator()(HBITMAP bitmap) const { ::DeleteObject(bitmap); }
};
using BitmapHandle = std::unique_ptr<std::remove_pointer_t<HBITMAP>, Close>;
using GraphicsHandle = std::unique_ptr<Gdiplus::GpGraphics, Close>;
using StreamHandle = std::unique_ptr<IStream, Close>;

// The screen's device context, which decides what bitmaps look like inside.
class ScreenContext {
 public:
  ScreenContext() : context_(::GetDC(nullptr)) {}
  ~ScreenContext() { ::ReleaseDC(nullptr, context_); }
  ScreenContext(const ScreenContext&) = delete;
  ScreenContext& operator=(const ScreenContext&) = delete;

  HDC get() const { return context_; }

 private:
  HDC context_;
};

BITMAPINFO describePixels(int32_t width, int32_t height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // top-down
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

// A GDI+ bitmap, and the error number when there was no memory for one.
struct Picture {
  std::unique_ptr<Gdiplus::GpBitmap, Close> bitmap;
  std::optional<uint32_t> allocation_error;
};

template <class Create>
Picture makePicture(Create create) {
  Gdiplus::GpBitmap* made = nullptr;
  const Gdiplus::GpStatus status = create(&made);
  Picture picture{std::unique_ptr<Gdiplus::GpBitmap, Close>(made), {}};
  if (status == Gdiplus::OutOfMemory) picture.allocation_error = ::GetLastError();
  return picture;
}

std::vector<uint8_t> streamContent(IStream* stream) {
  HGLOBAL memory = nullptr;
  if (FAILED(::GetHGlobalFromStream(stream, &memory))) return {};
  const size_t size = ::GlobalSize(memory);
  const auto* bytes = static_cast<const uint8_t*>(::GlobalLock(memory));
  if (bytes == nullptr) return {};
  std::vector<uint8_t> content(bytes, bytes + size);
  ::GlobalUnlock(memory);
  return content;
}

// A failed save gives what reached the stream.
std::vector<uint8_t> saveAsPng(Gdiplus::GpImage* image) {
  CLSID encoder{};
  IStream* made = nullptr;
  if (FAILED(::CLSIDFromString(kPngEncoder, &encoder)) || FAILED(::CreateStreamOnHGlobal(nullptr, TRUE, &made))) {
    return {};
  }
  const StreamHandle stream(made);
  gdi::GdipSaveImageToStream(image, stream.get(), &encoder, nullptr);
  return streamContent(stream.get());
}

PngFile fileOf(const Picture& picture) {
  if (picture.bitmap == nullptr) return {{}, picture.allocation_error};
  return {saveAsPng(picture.bitmap.get()), {}};
}

// A bitmap of the screen's kind with the same pixels.
BitmapHandle screenBitmap(const Bitmap& bitmap) {
  const BITMAPINFO info = describePixels(bitmap.width(), bitmap.height());
  const ScreenContext screen;
  BitmapHandle handle(
      ::CreateDIBitmap(screen.get(), &info.bmiHeader, CBM_INIT, bitmap.pixels(), &info, DIB_RGB_COLORS));
  ::GdiFlush();
  return handle;
}

}  // namespace

struct Bitmap::Memory {
  BitmapHandle section;
};

Bitmap::Bitmap(int32_t width, int32_t height) : width_(width), height_(height), memory_(std::make_unique<Memory>()) {
  if (!isPictureSize(width, height)) return;
  const BITMAPINFO info = describePixels(width, height);
  const ScreenContext screen;
  void* pixels = nullptr;
  memory_->section.reset(::CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
  pixels_ = static_cast<uint8_t*>(pixels);
}

Bitmap::~Bitmap() = default;

PngFile pngFromArgb(const uint8_t* pixels, int32_t width, int32_t height) {
  if (!isPictureSize(width, height)) return {};
  const GdiplusSession session;
  return fileOf(makePicture([&](Gdiplus::GpBitmap** made) {
    return gdi::GdipCreateBitmapFromScan0(width, height, width * kPixelSize, PixelFormat32bppARGB,
                                          const_cast<uint8_t*>(pixels), made);
  }));
}

PngFile pngFromBitmap(const Bitmap& bitmap, int32_t width, int32_t height) {
  if (!isPictureSize(width, height) || !isPictureSize(bitmap.width(), bitmap.height())) return {};
  if (bitmap.pixels() == nullptr) return {{}, ::GetLastError()};
  const GdiplusSession session;
  const BitmapHandle handle = screenBitmap(bitmap);
  const Picture source = makePicture(
      [&](Gdiplus::GpBitmap** made) { return gdi::GdipCreateBitmapFromHBITMAP(handle.get(), nullptr, made); });
  if (source.bitmap == nullptr) return {{}, source.allocation_error};

  Gdiplus::PixelFormat format = PixelFormatUndefined;
  gdi::GdipGetImagePixelFormat(source.bitmap.get(), &format);
  const Picture target = makePicture([&](Gdiplus::GpBitmap** made) {
    return gdi::GdipCreateBitmapFromScan0(width, height, 0, format, nullptr, made);
  });
  if (target.bitmap == nullptr) return {{}, target.allocation_error};

  Gdiplus::GpGraphics* made = nullptr;
  gdi::GdipGetImageGraphicsContext(target.bitmap.get(), &made);
  if (const GraphicsHandle graphics(made); graphics != nullptr) {
    gdi::GdipSetInterpolationMode(graphics.get(), Gdiplus::InterpolationModeHighQualityBicubic);
    gdi::GdipDrawImageRectI(graphics.get(), source.bitmap.get(), 0, 0, width, height);
  }
  return fileOf(target);
}

}  // namespace corvane::platform
