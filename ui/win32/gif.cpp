#include <windows.h>

#include <wincodec.h>

#include "common/com/handles.h"
#include "ui/image.h"

namespace murmelix::ui {

namespace {

using com::check;
using com::Ptr;

Ptr<IWICImagingFactory> imagingFactory() {
    Ptr<IWICImagingFactory> factory;
    check(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                           reinterpret_cast<void**>(factory.out())));
    return factory;
}

Image decoded(IWICImagingFactory& factory, std::string file) {
    Ptr<IWICStream> stream;
    check(factory.CreateStream(stream.out()));
    check(stream->InitializeFromMemory(reinterpret_cast<BYTE*>(file.data()), static_cast<DWORD>(file.size())));
    Ptr<IWICBitmapDecoder> decoder;
    check(factory.CreateDecoder(GUID_ContainerFormatGif, nullptr, decoder.out()));
    check(decoder->Initialize(stream.get(), WICDecodeMetadataCacheOnLoad));
    Ptr<IWICBitmapFrameDecode> frame;
    check(decoder->GetFrame(0, frame.out()));
    Ptr<IWICFormatConverter> converter;
    check(factory.CreateFormatConverter(converter.out()));
    check(converter->Initialize(frame.get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                WICBitmapPaletteTypeCustom));
    UINT width = 0, height = 0;
    check(converter->GetSize(&width, &height));
    // Nothing is made room for on the decoder's word alone.
    if (width == 0 || height == 0 || width > most_gif_pixels / height) {
        throw com::Error(WINCODEC_ERR_BADIMAGE);
    }
    Image image{static_cast<int>(width), static_cast<int>(height), std::vector<std::uint32_t>(width * height)};
    const UINT row = width * sizeof(std::uint32_t);
    check(converter->CopyPixels(nullptr, row, row * height, reinterpret_cast<BYTE*>(image.pixels.data())));
    for (std::uint32_t& pixel : image.pixels) {
        pixel = pixel >> 24 == 0 ? 0 : pixel; // the colour of what is not seen
    }
    return image;
}

} // namespace

std::optional<Image> native::decodedGif(const std::string& file) {
    try {
        return decoded(*imagingFactory().get(), file);
    } catch (const com::Error&) {
        return std::nullopt;
    }
}

} // namespace murmelix::ui
