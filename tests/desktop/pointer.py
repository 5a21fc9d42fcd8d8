"""The hands on the mouse: XTEST, whose movements the X server tells as it tells a real mouse's."""

import ctypes
import time

LEFT = 1


class Pointer:
    def __init__(self, desktop):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.test = ctypes.CDLL("libXtst.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        for function in (self.x11.XFlush, self.x11.XSync, self.x11.XCloseDisplay):
            function.argtypes = [ctypes.c_void_p] + [ctypes.c_int] * (function is self.x11.XSync)
        self.test.XTestFakeMotionEvent.argtypes = [ctypes.c_void_p] + [ctypes.c_int] * 3 + [ctypes.c_ulong]
        self.test.XTestFakeButtonEvent.argtypes = [ctypes.c_void_p, ctypes.c_uint, ctypes.c_int, ctypes.c_ulong]
        self.display = self.x11.XOpenDisplay(desktop.environment["DISPLAY"].encode())

    def move(self, x, y):
        self.test.XTestFakeMotionEvent(self.display, -1, int(x), int(y), 0)
        self.x11.XSync(self.display, 0)

    def button(self, number, is_press):
        self.test.XTestFakeButtonEvent(self.display, number, int(is_press), 0)
        self.x11.XSync(self.display, 0)

    def click(self, x, y, button=LEFT):
        self.move(x, y)
        time.sleep(0.03)
        self.button(button, True)
        time.sleep(0.03)
        self.button(button, False)

    def drag(self, start, by, steps=20):
        """Takes half a second; leaves the button down."""
        self.move(*start)
        time.sleep(0.05)
        self.button(LEFT, True)
        for step in range(1, steps + 1):
            self.move(start[0] + by[0] * step / steps, start[1] + by[1] * step / steps)
            time.sleep(0.5 / steps)

    def drop(self):
        self.button(LEFT, False)
