"""A connection to an X display that stays open: what windows there are is asked often, and a program started for each
question costs more than all else that the waiting does."""

import ctypes
import re
import threading
import time

_VIEWABLE = 2  # XWindowAttributes.map_state
_ANY_TYPE = 0  # AnyPropertyType
_LONGEST = 4096  # 32-bit units of a property; more than any title, or list of windows, has


class Unreachable(RuntimeError):
    """There is no display of that name, or no X library."""


class _Attributes(ctypes.Structure):
    """XWindowAttributes."""
    _fields_ = [(name, ctypes.c_int) for name in ("x", "y", "width", "height", "border_width", "depth")] + [
        ("visual", ctypes.c_void_p), ("root", ctypes.c_ulong)] + [
        (name, ctypes.c_int) for name in ("class_", "bit_gravity", "win_gravity", "backing_store")] + [
        ("backing_planes", ctypes.c_ulong), ("backing_pixel", ctypes.c_ulong), ("save_under", ctypes.c_int),
        ("colormap", ctypes.c_ulong), ("map_installed", ctypes.c_int), ("map_state", ctypes.c_int)] + [
        (name, ctypes.c_long) for name in ("all_event_masks", "your_event_mask", "do_not_propagate_mask")] + [
        ("override_redirect", ctypes.c_int), ("screen", ctypes.c_void_p)]


_OnError = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)
_OnLoss = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p)
_OnEnd = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_void_p)
# A window may vanish between two questions: its question is answered by nothing. A display that ends is no end of ours.
_no_error = _OnError(lambda display, error: 0)
_no_loss = _OnLoss(lambda display: 0)
_no_end = _OnEnd(lambda display, data: None)


def _library():
    try:
        x11 = ctypes.CDLL("libX11.so.6")
    except OSError as error:
        raise Unreachable(str(error)) from None
    pointer, window, atom = ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong
    x11.XOpenDisplay.argtypes, x11.XOpenDisplay.restype = [ctypes.c_char_p], pointer
    x11.XDefaultRootWindow.argtypes, x11.XDefaultRootWindow.restype = [pointer], window
    x11.XInternAtom.argtypes, x11.XInternAtom.restype = [pointer, ctypes.c_char_p, ctypes.c_int], atom
    x11.XQueryTree.argtypes = [pointer, window] + [pointer] * 4
    x11.XGetWindowAttributes.argtypes = [pointer, window, pointer]
    x11.XGetWindowProperty.argtypes = [pointer, window, atom, ctypes.c_long, ctypes.c_long, ctypes.c_int, atom] + [pointer] * 5
    x11.XCreatePixmap.argtypes, x11.XCreatePixmap.restype = [pointer, window] + [ctypes.c_uint] * 3, ctypes.c_ulong
    x11.XCreateGC.argtypes, x11.XCreateGC.restype = [pointer, ctypes.c_ulong, ctypes.c_ulong, pointer], pointer
    x11.XSetForeground.argtypes = [pointer, pointer, ctypes.c_ulong]
    x11.XDrawPoint.argtypes = [pointer, ctypes.c_ulong, pointer, ctypes.c_int, ctypes.c_int]
    x11.XSetWindowBackgroundPixmap.argtypes = [pointer, window, ctypes.c_ulong]
    x11.XSetIOErrorExitHandler.argtypes = [pointer, _OnEnd, pointer]
    x11.XCreateSimpleWindow.argtypes = [pointer, window] + [ctypes.c_int] * 2 + [ctypes.c_uint] * 3 + [ctypes.c_ulong] * 2
    x11.XCreateSimpleWindow.restype = window
    for name in ("XFreePixmap", "XClearWindow", "XMapWindow", "XDestroyWindow"):
        getattr(x11, name).argtypes = [pointer, ctypes.c_ulong]
    x11.XFreeGC.argtypes = [pointer, pointer]
    for name in ("XFree", "XCloseDisplay"):
        getattr(x11, name).argtypes = [pointer]
    x11.XSync.argtypes = [pointer, ctypes.c_int]
    x11.XSetErrorHandler(_no_error)
    x11.XSetIOErrorHandler(_no_loss)
    return x11


class XDisplay:
    """Questions to one X display, from any thread. Windows are numbers, as `xdotool` prints them."""

    def __init__(self, name):
        self._x11 = _library()
        self._display = self._x11.XOpenDisplay(name.encode())
        if not self._display:
            raise Unreachable(name)
        self._x11.XSetIOErrorExitHandler(self._display, _no_end, None)
        self._lock = threading.RLock()
        self._root = self._x11.XDefaultRootWindow(self._display)
        self._atoms = {}

    def close(self):
        with self._lock:
            if self._display:
                self._x11.XCloseDisplay(self._display)
                self._display = None

    def visible(self, title_pattern):
        """The windows that can be seen whose titles match the pattern, whatever the case of letters."""
        wanted = re.compile(title_pattern, re.IGNORECASE)
        with self._lock:
            return [window for window in self._below(self._root)
                    if wanted.search(self._title(window)) and self._is_viewable(window)] if self._display else []

    def window_of_root(self, property_name):
        """The window that a property of the screen names, None where there is no such property."""
        with self._lock:
            values = self._property(self._root, property_name) if self._display else None
        return int.from_bytes(values[:8], "little") or None if values else None

    def shows_new_windows(self, seconds=0.2):
        """Whether a window manager shows a window of ours within so many seconds. One that has only just begun says that
        it is there before it is: a window that comes in between is never shown."""
        with self._lock:
            window = self._x11.XCreateSimpleWindow(self._display, self._root, 0, 0, 1, 1, 0, 0, 0)
            self._x11.XMapWindow(self._display, window)
            deadline = time.monotonic() + seconds
            shown = False
            while not shown and time.monotonic() < deadline:
                shown = self._property(window, "WM_STATE") is not None
                time.sleep(0.005)
            self._x11.XDestroyWindow(self._display, window)
            self._x11.XSync(self._display, 0)
            return shown

    def paint(self, height, top, bottom):
        """Colours the screen's background, from one colour (red, green, blue) at the top to another at the bottom."""
        x11 = self._x11
        with self._lock:
            pixmap = x11.XCreatePixmap(self._display, self._root, 1, height, 24)
            context = x11.XCreateGC(self._display, pixmap, 0, None)
            for y in range(height):
                red, green, blue = (round(a + (b - a) * y / (height - 1)) for a, b in zip(top, bottom))
                x11.XSetForeground(self._display, context, red << 16 | green << 8 | blue)
                x11.XDrawPoint(self._display, pixmap, context, 0, y)
            x11.XSetWindowBackgroundPixmap(self._display, self._root, pixmap)
            x11.XClearWindow(self._display, self._root)
            x11.XFreeGC(self._display, context)
            x11.XFreePixmap(self._display, pixmap)
            x11.XSync(self._display, 0)

    def _below(self, window):
        """All windows in a window, each generation of a family together, the oldest first."""
        root, parent, count = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_uint()
        children = ctypes.POINTER(ctypes.c_ulong)()
        if not self._x11.XQueryTree(self._display, window, *map(ctypes.byref, (root, parent, children, count))):
            return []
        found = children[:count.value]
        if children:
            self._x11.XFree(children)
        return found + [below for child in found for below in self._below(child)]

    def _property(self, window, name):
        """The bytes of a property; numbers of 32 bits have eight each. None where there is none."""
        if name not in self._atoms:
            self._atoms[name] = self._x11.XInternAtom(self._display, name.encode(), 0)
        kind, width, count, rest = ctypes.c_ulong(), ctypes.c_int(), ctypes.c_ulong(), ctypes.c_ulong()
        data = ctypes.c_void_p()
        status = self._x11.XGetWindowProperty(self._display, window, self._atoms[name], 0, _LONGEST, 0, _ANY_TYPE,
                                              *map(ctypes.byref, (kind, width, count, rest, data)))
        if status != 0 or not data:
            return None
        value = ctypes.string_at(data, count.value * {8: 1, 16: 2, 32: 8}.get(width.value, 0))
        self._x11.XFree(data)
        return value

    def _title(self, window):
        title = self._property(window, "_NET_WM_NAME") or self._property(window, "WM_NAME") or b""
        try:
            return title.decode("utf-8")
        except UnicodeDecodeError:
            return title.decode("latin-1")

    def _is_viewable(self, window):
        attributes = _Attributes()
        return bool(self._x11.XGetWindowAttributes(self._display, window, ctypes.byref(attributes))) \
            and attributes.map_state == _VIEWABLE
