package com.velmira.VKMakeup;

import static com.velmira.VKMakeup.Fixtures.*;
import static org.junit.Assert.*;

import android.graphics.Bitmap;
import java.nio.ByteBuffer;
import java.util.Random;
import org.junit.Test;

public class BitmapTest {
    private final MakeupEngine engine = new MakeupEngine();

    private static Bitmap noise(int padding) {
        Bitmap bitmap = new Bitmap(37, 20, 37 * 4 + padding);
        byte[] bytes = new byte[bitmap.pixels.capacity()];
        new Random(padding).nextBytes(bytes);
        bitmap.pixels.put(bytes).rewind();
        return bitmap;
    }

    /** The same pixels in a buffer. */
    private static Frame pixels(Bitmap bitmap) {
        ByteBuffer copy = ByteBuffer.allocateDirect(bitmap.pixels.capacity());
        copy.put(bitmap.pixels.duplicate()).rewind();
        return Frame.ofPixels(copy, PixelFormat.RGBA, bitmap.stride, bitmap.width, bitmap.height);
    }

    private static void assertLocked(int times, Bitmap bitmap) {
        assertEquals("locked", times, bitmap.locks);
        assertEquals("unlocked", times, bitmap.unlocks);
    }

    @Test
    public void bitmapsAreFramesOfPixels() {
        for (int padding : new int[] {0, 12}) {
            Bitmap bitmap = noise(padding);
            Bitmap target = noise(24);
            Frame inBuffer = pixels(bitmap);
            Frame targetInBuffer = pixels(target);
            Frame frame = Frame.ofBitmap(bitmap);
            engine.process(inBuffer, targetInBuffer);
            engine.process(frame, Frame.ofBitmap(target));
            assertEquals(targetInBuffer.plane(0), target.pixels);
            engine.process(inBuffer);
            engine.process(frame);
            assertEquals(inBuffer.plane(0), bitmap.pixels);
            assertLocked(2, bitmap);
            engine.process(inBuffer);
            engine.process(frame, Frame.ofBitmap(bitmap)); // another frame of the same bitmap is in place too
            assertEquals(inBuffer.plane(0), bitmap.pixels);
            assertEquals("Bitmap 37 x 20, strides " + bitmap.stride, frame.toString());

            Frame yuv = Frame.copyOfNv21(Fixtures.frame(37, 20), 37, 20, Colorimetry.JFIF);
            engine.process(yuv, inBuffer);
            engine.process(yuv, frame);
            assertEquals(inBuffer.plane(0), bitmap.pixels);
        }
    }

    @Test
    public void bitmapsThatCannotBeProcessedAreRefusedAndUnlocked() {
        Bitmap source = noise(0);
        Bitmap target = noise(0);
        Frame from = Frame.ofBitmap(source);
        Frame to = Frame.ofBitmap(target);
        String frames = " (source: Bitmap 37 x 20, strides 148; target: Bitmap 37 x 20, strides 148)";
        target.isRecycled = true;
        assertRefused(WRONG, "the pixels of a bitmap cannot be had, as of one that is recycled or in the memory of the"
                + " graphics processor" + frames, () -> engine.process(from, to));
        target.isRecycled = false;
        target.width = 36;
        assertRefused(WRONG, "a bitmap has another size or configuration than when its frame was made" + frames,
                () -> engine.process(from, to));
        target.format = 4;
        assertRefused(WRONG, "a bitmap of the native format 4, but must be 1 (RGBA_8888, Bitmap.Config.ARGB_8888)",
                () -> Frame.ofBitmap(target));
        target.format = -1;
        assertRefused(WRONG, "a bitmap without pixels: it is recycled", () -> Frame.ofBitmap(target));
        target.format = 1; // native code may describe a recycled one
        target.isRecycled = true;
        assertRefused(WRONG, "a bitmap without pixels: it is recycled", () -> Frame.ofBitmap(target));
        assertLocked(2, source);
        assertLocked(0, target);
        source.isMutable = false;
        engine.process(from, to(from));
        assertThrows(WRONG, () -> engine.process(Frame.ofBitmap(source)));
        assertLocked(3, source);
        assertRefused(WRONG, "a java.lang.String, but must be an android.graphics.Bitmap", () -> Frame.ofBitmap("no"));
        assertThrows(WRONG, () -> from.plane(0));
    }

    private static Frame to(Frame source) {
        return Frame.allocateNv21(source.width(), source.height(), Colorimetry.BT709);
    }
}
