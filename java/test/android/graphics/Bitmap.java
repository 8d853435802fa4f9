package android.graphics;

import java.nio.ByteBuffer;

/** Stands in for Android's class: its name, and fields that the tests' AndroidBitmap functions go by. */
public final class Bitmap {
    public final ByteBuffer pixels;
    public int width;
    public final int height;
    public final int stride;
    public int format = 1;
    public boolean isMutable = true;
    public boolean isRecycled;
    public int locks;
    public int unlocks;

    public Bitmap(int width, int height, int stride) {
        this.width = width;
        this.height = height;
        this.stride = stride;
        pixels = ByteBuffer.allocateDirect(height * stride);
    }

    public boolean isMutable() {
        return isMutable;
    }

    public boolean isRecycled() {
        return isRecycled;
    }
}
