#include "host/picture/renderer/Renderer.h"

#include <cairo-pdf.h>
#include <cairo.h>
#include <librsvg/rsvg.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

constexpr double pointsPerInch = 72.0;

template <auto function>
struct By {
    template <class T>
    void operator()(T* object) const {
        function(object);
    }
};
using Handle = std::unique_ptr<RsvgHandle, By<g_object_unref>>;
using Stream = std::unique_ptr<GInputStream, By<g_object_unref>>;
using Surface = std::unique_ptr<cairo_surface_t, By<cairo_surface_destroy>>;
using Context = std::unique_ptr<cairo_t, By<cairo_destroy>>;

[[noreturn]] void fail(GError* error) {
    const std::string text = error == nullptr ? "unknown reason" : error->message;
    g_clear_error(&error);
    throw std::runtime_error(text);
}

void demand(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS) throw std::runtime_error(cairo_status_to_string(status));
}

struct Target {
    OrlinthSink sink;
    void* receiver;
};

cairo_status_t give(void* target, const unsigned char* bytes, unsigned size) {
    const auto* to = static_cast<const Target*>(target);
    try {
        to->sink(to->receiver, reinterpret_cast<const char*>(bytes), size);
    } catch (...) {
        // No exception passes the library's own frames.
        return CAIRO_STATUS_NO_MEMORY;
    }
    return CAIRO_STATUS_SUCCESS;
}

// Large drawings pass the limits that are meant for pictures of strangers.
Handle read(const char* svg, std::size_t size) {
    const Stream stream(
        g_memory_input_stream_new_from_data(svg, static_cast<gssize>(size), nullptr));
    GError* error = nullptr;
    Handle handle(rsvg_handle_new_from_stream_sync(stream.get(), nullptr,
                                                   RSVG_HANDLE_FLAG_UNLIMITED, nullptr, &error));
    if (handle == nullptr) fail(error);
    return handle;
}

void render(RsvgHandle* handle, cairo_surface_t* surface, double width, double height) {
    const Context context(cairo_create(surface));
    const RsvgRectangle page{0.0, 0.0, width, height};
    GError* error = nullptr;
    if (rsvg_handle_render_document(handle, context.get(), &page, &error) == 0) fail(error);
    demand(cairo_status(context.get()));
}

void renderPng(RsvgHandle* handle, double width, double height, Target target) {
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                                     static_cast<int>(std::lround(width)),
                                                     static_cast<int>(std::lround(height))));
    demand(cairo_surface_status(surface.get()));
    render(handle, surface.get(), width, height);
    demand(cairo_surface_write_to_png_stream(surface.get(), give, &target));
}

// The same picture gives the same bytes: the document tells no time of its making.
void renderPdf(RsvgHandle* handle, double width, double height, Target target) {
    const Surface surface(cairo_pdf_surface_create_for_stream(give, &target, width, height));
    demand(cairo_surface_status(surface.get()));
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
    render(handle, surface.get(), width, height);
    cairo_surface_finish(surface.get());
    demand(cairo_surface_status(surface.get()));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int orlinthRender(
    const char* svg, std::size_t size, OrlinthFormat format, double dotsPerInch, OrlinthSink sink,
    void* receiver, char* reason, std::size_t reasonSize) {
    try {
        const Handle handle = read(svg, size);
        rsvg_handle_set_dpi(handle.get(), format == orlinthPng ? dotsPerInch : pointsPerInch);
        double width = 0.0, height = 0.0;
        if (rsvg_handle_get_intrinsic_size_in_pixels(handle.get(), &width, &height) == 0)
            throw std::runtime_error("it has no size");
        (format == orlinthPng ? renderPng : renderPdf)(handle.get(), width, height,
                                                       {sink, receiver});
        return 0;
    } catch (const std::exception& error) {
        std::snprintf(reason, reasonSize, "%s", error.what());
    } catch (...) {
        std::snprintf(reason, reasonSize, "unknown reason");
    }
    return 1;
}
