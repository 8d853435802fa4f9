package com.velmira.VKMakeup;

/** Order of the bytes of a pixel in memory, the same on every processor. Colours are full range RGB. */
public enum PixelFormat {
    /** Red, green, blue, alpha: {@code Bitmap.Config.ARGB_8888}, {@code PixelFormat.RGBA_8888}, OpenGL's GL_RGBA. */
    RGBA(16, 4),

    /** Blue, green, red, alpha: integers 0xAARRGGBB in little-endian order. */
    BGRA(17, 4),

    /** Like {@link #RGBA}, but the fourth byte is not read, and written as 255. */
    RGBX(18, 4),

    /** Like {@link #BGRA}, but the fourth byte is not read, and written as 255. */
    BGRX(19, 4),

    /** Red, green, blue. */
    RGB(20, 3),

    /** Blue, green, red. */
    BGR(21, 3);

    final int number; // of the native side
    final int bytes; // of a pixel

    PixelFormat(int number, int bytes) {
        this.number = number;
        this.bytes = bytes;
    }
}
