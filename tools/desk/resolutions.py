"""Resolutions of an own screen: Xvfb starts with one, and takes any smaller one that a client of its RandR extension has
made known. Programs in Wine can choose it then, as they choose one of a monitor's."""

import ctypes

_NAME = ctypes.c_char_p
_ID = ctypes.c_ulong


class _Mode(ctypes.Structure):
    _fields_ = [("id", _ID), ("width", ctypes.c_uint), ("height", ctypes.c_uint), ("clock", _ID),
                ("h_sync_start", ctypes.c_uint), ("h_sync_end", ctypes.c_uint), ("h_total", ctypes.c_uint),
                ("h_skew", ctypes.c_uint), ("v_sync_start", ctypes.c_uint), ("v_sync_end", ctypes.c_uint),
                ("v_total", ctypes.c_uint), ("name", _NAME), ("name_length", ctypes.c_uint), ("flags", _ID)]


class _Resources(ctypes.Structure):
    _fields_ = [("timestamp", _ID), ("config_timestamp", _ID), ("crtc_count", ctypes.c_int), ("crtcs", ctypes.POINTER(_ID)),
                ("output_count", ctypes.c_int), ("outputs", ctypes.POINTER(_ID)), ("mode_count", ctypes.c_int),
                ("modes", ctypes.c_void_p)]


def offer(display, width, height):
    """The display can have that many pixels, too."""
    x, randr = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXrandr.so.2")
    x.XOpenDisplay.restype = ctypes.c_void_p
    randr.XRRGetScreenResources.restype = ctypes.POINTER(_Resources)
    randr.XRRCreateMode.restype = _ID
    connection = ctypes.c_void_p(x.XOpenDisplay(display.encode("ascii")))
    if not connection:
        raise RuntimeError(f"the display {display} cannot be reached")
    root = _ID(x.XDefaultRootWindow(connection))
    name = f"{width}x{height}".encode("ascii")
    # Nothing is shown anywhere: 60 pictures a second, without margins.
    mode = _Mode(0, width, height, 60 * width * height, width, width, width, 0, height, height, height, name, len(name), 0)
    resources = randr.XRRGetScreenResources(connection, root)
    made = _ID(randr.XRRCreateMode(connection, root, ctypes.byref(mode)))
    randr.XRRAddOutputMode(connection, _ID(resources.contents.outputs[0]), made)
    randr.XRRFreeScreenResources(resources)
    x.XSync(connection, 0)
    x.XCloseDisplay(connection)
