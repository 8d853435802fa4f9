package com.velmira.VKMakeup;

import static com.velmira.VKMakeup.Fixtures.*;
import static org.junit.Assert.*;

import java.io.*;
import java.lang.management.ManagementFactory;
import java.nio.ByteBuffer;
import java.util.*;
import org.junit.Test;
import org.junit.function.ThrowingRunnable;

public class FrameTest {
    private static final String[] FORMATS = {"NV12", "NV21", "I420"};
    private static final byte[] TABLE = file(picture(2));
    private static final Colorimetry LIMITED = Colorimetry.BT601_LIMITED;

    private static byte[] bytes(ByteBuffer buffer) {
        byte[] bytes = new byte[buffer.remaining()];
        buffer.get(bytes);
        return bytes;
    }

    private static byte[] processed(MakeupEngine engine, byte[] nv21, int width, int height) {
        Frame frame = Frame.copyOfNv21(nv21, width, height, LIMITED);
        engine.process(frame);
        byte[] result = new byte[nv21.length];
        frame.copyTo(result);
        return result;
    }

    @Test
    public void framesEqualArraysUnderTheSameSettings() throws IOException {
        int[][] cases = {{640, 480, 50, 1000}, {64, 34, 1, 1000}, {16, 10, 100, 0}, {16, 2, 9, 900}};
        try (MakeupEngine engine = new MakeupEngine(name -> new ByteArrayInputStream(TABLE))) {
            engine.setContrast(Contrast.ABSOLUTE);
            engine.setRadius(20);
            engine.setTable(stream(TABLE, 5000, null));
            for (int[] one : cases) {
                engine.setWhitening(one[2]);
                engine.setSoftening(one[3]);
                byte[] array = frame(one[0], one[1]);
                byte[] result = processed(engine, array, one[0], one[1]);
                engine.process(array, one[0], one[1]);
                assertArrayEquals(Arrays.toString(one), array, result);
            }
        }
    }

    private static void checkLayout(MakeupEngine engine, String format, int width, int height, int padding) {
        String what = format + " " + width + " x " + height + ", padding " + padding;
        byte[] nv21 = frame(width, height);
        byte[] expected = processed(engine, nv21, width, height);
        Arena arena = new Arena(format, width, height, padding, nv21);
        byte[] rest = arena.rest();
        Frame pixels = Frame.allocatePixels(PixelFormat.BGRA, width, height);
        Frame others = Frame.allocatePixels(PixelFormat.BGRA, width, height);
        engine.process(arena.frame, pixels);
        engine.process(Frame.copyOfNv21(nv21, width, height, LIMITED), others);
        assertArrayEquals(what + " to pixels", bytes(others.plane(0)), bytes(pixels.plane(0)));
        for (String to : FORMATS) {
            Arena target = new Arena(to, width, height, padding / 2, new byte[nv21.length]);
            engine.process(arena.frame, target.frame);
            assertArrayEquals(what + " to " + to, expected, target.nv21());
        }
        assertArrayEquals(what + ", source", nv21, arena.nv21());
        engine.process(arena.frame);
        assertArrayEquals(what + " in place", expected, arena.nv21());
        assertArrayEquals(what + ", what is not the frame", rest, arena.rest());
    }

    @Test
    public void everyLayoutOfThreePlanesIsTheSameFrame() {
        try (MakeupEngine engine = new MakeupEngine()) {
            engine.setEvenTone(300);
            for (int[] size : new int[][] {{64, 48}, {37, 25}, {16, 3}, {2, 2}, {1, 1}, {1, 5}, {3, 1}}) {
                for (int i = 0; i < FORMATS.length * 3; ++i) {
                    checkLayout(engine, FORMATS[i / 3], size[0], size[1], i % 3 * 13);
                }
            }
        }
    }

    @Test
    public void pixelsMayLieInReadOnlyPaddedOrHeapBuffers() {
        byte[] noise = new byte[(5 * 40 + 33 * 3) + 9];
        new Random(1).nextBytes(noise);
        ByteBuffer heap = ByteBuffer.wrap(noise);
        heap.position(9); // 6 rows of 33 pixels with stride 40 from here on
        ByteBuffer direct = ByteBuffer.allocateDirect(noise.length);
        direct.put(noise).position(9);
        try (MakeupEngine engine = new MakeupEngine()) {
            Frame copy = Frame.copyOfPixels(ByteBuffer.wrap(noise), PixelFormat.RGB, 40, 11, 6);
            assertArrayEquals(Arrays.copyOfRange(noise, 40, 73), Arrays.copyOfRange(bytes(copy.plane(0)), 33, 66));
            copy = Frame.copyOfPixels(heap, PixelFormat.RGB, 40, 11, 6);
            Frame readOnly = Frame.ofPixels(direct.asReadOnlyBuffer(), PixelFormat.RGB, 40, 11, 6);
            Frame target = Frame.allocatePixels(PixelFormat.RGBX, 11, 6);
            engine.process(readOnly, target);
            byte[] result = bytes(target.plane(0));
            engine.process(copy, target);
            assertArrayEquals(result, bytes(target.plane(0)));
            assertEquals(-1, result[3]);
            assertRefused(WRONG, "the target is read-only: a buffer that may only be read, or a bitmap that is not"
                    + " mutable (RGB 11 x 6, strides 40)", () -> engine.process(readOnly));
            assertTrue(readOnly.plane(0).isReadOnly());
            assertEquals(9, heap.position() + direct.position() - 9);
        }
    }

    private static ByteBuffer direct(int size) {
        return ByteBuffer.allocateDirect(size);
    }

    private static Frame planes(ByteBuffer y, int yStride, int u, int v, int stride, int step, int width, int height) {
        ByteBuffer chroma = direct(100);
        ByteBuffer second = chroma.duplicate();
        chroma.limit(u);
        second.limit(v).position(step == 2 ? 1 : 50);
        return Frame.ofYuv420(y, yStride, chroma, second, stride, step, width, height, LIMITED);
    }

    @Test
    public void wrongFramesAreRefusedWithTheirNumbers() {
        ByteBuffer y = direct(32);
        planes(y, 8, 15, 16, 8, 2, 8, 4); // each view ends one byte early
        String message = "plane %s: 2 rows of 8 bytes with stride 8 take 15 bytes, but the buffer has 14 from position"
                + " to limit";
        assertRefused(WRONG, String.format(message, "U"), () -> planes(y, 8, 14, 16, 8, 2, 8, 4));
        assertRefused(WRONG, String.format(message, "V"), () -> planes(y, 8, 15, 15, 8, 2, 8, 4));
        assertRefused(WRONG, "plane U: 2 rows of 4 bytes with stride 5 take 9 bytes, but the buffer has 8 from"
                + " position to limit",
                () -> planes(y, 8, 8, 59, 5, 1, 8, 4));
        assertRefused(WRONG, "plane Y: 4 rows of 8 bytes with stride 2147483647 take 6442450949 bytes, but the buffer"
                + " has 32 from position to limit", () -> planes(y, Integer.MAX_VALUE, 15, 16, 8, 2, 8, 4));
        assertRefused(WRONG, "plane Y: stride 7, a row has 8 bytes", () -> planes(y, 7, 15, 16, 8, 2, 8, 4));
        assertRefused(WRONG, "plane U: stride -8, a row has 8 bytes", () -> planes(y, 8, 15, 16, -8, 2, 8, 4));
        assertRefused(WRONG, "a frame of 0 x 4 pixels: each side has 1 to 65535",
                () -> planes(y, 8, 15, 16, 8, 2, 0, 4));
        for (int step : new int[] {0, 3}) {
            assertRefused(WRONG, "a pixel stride of " + step + ", but it must be 1 (I420) or 2 (NV12, NV21). Make a"
                    + " copy: Nv21.pack and Frame.copyOfNv21", () -> planes(y, 8, 40, 90, 16, step, 8, 4));
        }
        ByteBuffer apart = (ByteBuffer) y.duplicate().position(2);
        assertTrue(assertThrows(WRONG, () -> Frame.ofYuv420(y, 8, apart, y, 8, 2, 8, 4, LIMITED)).getMessage()
                .startsWith("V begins -2 bytes from U, but with a pixel stride of 2 it must begin 1 byte after U"));
        String heap = ": the buffer is on the heap, where the collector may move it while native code works on it. Use"
                + " ByteBuffer.allocateDirect, or make a copy: ";
        assertRefused(WRONG, "plane Y" + heap + "Nv21.pack and Frame.copyOfNv21",
                () -> planes(ByteBuffer.allocate(32), 8, 15, 16, 8, 2, 8, 4));
        assertRefused(WRONG, "pixels" + heap + "Frame.copyOfPixels",
                () -> Frame.ofPixels(ByteBuffer.allocate(32), PixelFormat.RGBA, 8, 2, 4));
        assertRefused(WRONG, "pixels: 4 rows of 8 bytes with stride 9 take 35 bytes, but the buffer has 34 from"
                + " position to limit",
                () -> Frame.ofPixels(direct(34), PixelFormat.RGBA, 9, 2, 4));
        assertRefused(WRONG, "pixels: stride 7, a row has 8 bytes",
                () -> Frame.copyOfPixels(ByteBuffer.allocate(99), PixelFormat.RGBA, 7, 2, 4));
        assertRefused(WRONG, "a frame of 65535 x 65535 pixels takes 17179344900 bytes, too many for a buffer",
                () -> Frame.allocatePixels(PixelFormat.RGBA, 65535, 65535));
        for (int height : new int[] {-1, 65536, Integer.MAX_VALUE}) { // before anything is allocated
            String sides = "a frame of 2147483647 x " + height + " pixels: each side has 1 to 65535";
            assertRefused(WRONG, sides, () -> Frame.allocatePixels(PixelFormat.RGBA, Integer.MAX_VALUE, height));
            assertRefused(WRONG, sides, () -> Frame.allocateNv21(Integer.MAX_VALUE, height, LIMITED));
        }
        Frame nv21 = Frame.allocateNv21(6, 4, LIMITED);
        assertEquals(24, nv21.plane(0).remaining());
        Frame partly = Frame.ofYuv420(nv21.plane(0), 6, nv21.plane(1).asReadOnlyBuffer(), nv21.plane(2), 6, 2, 6, 4,
                LIMITED);
        assertThrows(java.nio.ReadOnlyBufferException.class, () -> partly.copyFrom(frame(6, 4)));
        assertEquals("nothing is written before the refusal", 0, nv21.plane(0).get());
        assertThrows(WRONG, () -> nv21.copyTo(new byte[35]));
        assertThrows(WRONG, () -> nv21.plane(3));
        assertThrows(UnsupportedOperationException.class,
                () -> Frame.allocatePixels(PixelFormat.RGB, 6, 4).copyFrom(new byte[36]));
        assertRefused(UnsupportedOperationException.class, "this platform has no class android.graphics.Bitmap",
                () -> Frame.ofBitmap("no bitmap"));
        try (MakeupEngine engine = new MakeupEngine()) {
            Frame other = Frame.ofPixels(nv21.plane(0), PixelFormat.BGR, 6, 2, 4);
            assertRefused(WRONG, "source 6 x 4, target 2 x 4: the sizes must be the same",
                    () -> engine.process(nv21, other));
            engine.setMask(nv21.plane(0), 3, 2, 1);
            String shared = "the target's planes share memory with each other, with the mask, or with the source"
                    + " without being in place. Use a target with memory of its own (%s; mask: 2 x 1, stride 3)";
            assertRefused(WRONG, String.format(shared, "in place: BGR 2 x 4, strides 6"), () -> engine.process(other));
            assertRefused(WRONG, String.format(shared, "source: BGR 2 x 4, strides 6; target: RGB 2 x 4, strides 6"),
                    () -> engine.process(other, Frame.ofPixels(nv21.plane(0), PixelFormat.RGB, 6, 2, 4)));
        }
    }

    @Test
    public void dataSpacesOfAndroidAreDecoded() {
        assertSame(Colorimetry.JFIF, Colorimetry.ofDataSpace(146931712)); // DATASPACE_JFIF
        assertSame(Colorimetry.BT601_625, Colorimetry.ofDataSpace(281149440));
        assertSame(Colorimetry.BT601_525, Colorimetry.ofDataSpace(281280512));
        assertSame(Colorimetry.BT709, Colorimetry.ofDataSpace(281083904));
        assertSame(Colorimetry.BT709_FULL, Colorimetry.ofDataSpace(142671872)); // DATASPACE_SRGB
        for (int unknown : new int[] {0, 163971072, 281149440 + (1 << 16), 281083904 + (1 << 27)}) { // second: BT2020
            assertTrue(assertThrows(WRONG, () -> Colorimetry.ofDataSpace(unknown)).getMessage()
                    .startsWith("data space " + unknown + " has standard "));
            assertSame(Colorimetry.JFIF, Colorimetry.ofDataSpace(unknown, Colorimetry.JFIF));
        }
        byte[] nv21 = frame(16, 8);
        Set<Integer> results = new HashSet<>();
        try (MakeupEngine engine = new MakeupEngine()) {
            for (Colorimetry colorimetry : Colorimetry.values()) {
                Frame target = Frame.allocatePixels(PixelFormat.RGB, 16, 8);
                engine.process(Frame.copyOfNv21(nv21, 16, 8, colorimetry), target);
                results.add(Arrays.hashCode(bytes(target.plane(0))));
            }
        }
        assertEquals("all differ", 4, results.size());
    }

    @Test
    public void everySettingActsAndItsRangeIsChecked() throws IOException {
        byte[] nv21 = frame(64, 48);
        ByteBuffer mask = direct(9 + 3 * 8);
        mask.position(5);
        try (MakeupEngine engine = new MakeupEngine()) {
            engine.setWhitenArea(WhitenArea.SKIN);
            engine.setMask(mask, 8, 4, 4);
            assertArrayEquals("a mask of zeros", nv21, processed(engine, nv21, 64, 48));
            mask.put(5, (byte) 255);
            byte[] corner = processed(engine, nv21, 64, 48);
            assertArrayEquals(Arrays.copyOfRange(nv21, 13 * 64, 48 * 64), Arrays.copyOfRange(corner, 13 * 64, 48 * 64));
            Set<Integer> results = new HashSet<>(Arrays.asList(Arrays.hashCode(nv21), Arrays.hashCode(corner)));
            ThrowingRunnable[] changes = {
                () -> engine.clearMask(), () -> engine.setWhitenArea(WhitenArea.ALL), () -> engine.setRadius(40),
                () -> engine.setContrast(Contrast.ABSOLUTE), () -> engine.setEvenTone(1000),
                () -> engine.setTable(new ByteArrayInputStream(TABLE)), () -> engine.setWhitening(90),
                () -> engine.setSoftening(400)
            };
            for (int i = 0; i < changes.length; ++i) {
                run(changes[i]);
                assertTrue("change " + i, results.add(Arrays.hashCode(processed(engine, nv21, 64, 48))));
            }
            engine.setThreads(3);
            byte[] last = processed(engine, nv21, 64, 48);
            assertFalse("threads change nothing", results.add(Arrays.hashCode(last)));

            IOException thrown = new IOException("gone");
            assertSame(thrown, assertThrows(IOException.class, () -> engine.setTable(stream(new byte[5], 5, thrown))));
            assertRefused(WRONG, "no colour table: 500 bytes, of which a table takes 1048588, with the size of its"
                    + " picture in the header. 'vlvk-makeup table convert IN adjust.vlk' makes one of a .cube file or a"
                    + " picture", () -> engine.setTable(new ByteArrayInputStream(TABLE, 0, 500)));
            assertRefused(WRONG, "radius is -2, but must be 0 to 128 or AUTO_RADIUS (-1)", () -> engine.setRadius(-2));
            assertThrows(WRONG, () -> engine.setRadius(129));
            assertRefused(WRONG, "even tone is 1001, but must be 0 to 1000", () -> engine.setEvenTone(1001));
            assertRefused(WRONG, "threads is 65, but must be 0 to 64", () -> engine.setThreads(65));
            assertRefused(WRONG, "mask: 4 rows of 4 bytes with stride 8 take 28 bytes, but the buffer has 27 from"
                    + " position to limit",
                    () -> engine.setMask((ByteBuffer) direct(28).position(1), 8, 4, 4));
            assertRefused(WRONG, "a mask of 4 x 4 values with stride 3", () -> engine.setMask(mask, 3, 4, 4));
            assertThrows(WRONG, () -> engine.setMask(ByteBuffer.allocate(99), 8, 4, 4));
            assertArrayEquals("all as before", last, processed(engine, nv21, 64, 48));
            engine.setTable(null);
            assertFalse("no table", Arrays.equals(last, processed(engine, nv21, 64, 48)));
        }
    }

    private static void run(ThrowingRunnable change) {
        try {
            change.run();
        } catch (Throwable thrown) {
            rethrow(thrown);
        }
    }

    @Test
    public void steadyFramesAllocateNothing() throws Exception {
        com.sun.management.ThreadMXBean threads =
                (com.sun.management.ThreadMXBean) ManagementFactory.getThreadMXBean();
        long self = Thread.currentThread().getId();
        Arena arena = new Arena("NV21", 64, 48, 10, frame(64, 48));
        Frame pixels = Frame.allocatePixels(PixelFormat.RGBA, 64, 48);
        try (MakeupEngine engine = new MakeupEngine()) {
            engine.setMask(direct(64), 8, 8, 8);
            long allocated = 0;
            long resident = 0;
            for (int i = 0; i < 4000; ++i) {
                if (i == 2000) {
                    resident = NativeMemoryTest.residentBytes();
                    threads.getThreadAllocatedBytes(self);
                    allocated = threads.getThreadAllocatedBytes(self);
                }
                engine.process(arena.frame);
                engine.process(arena.frame, pixels);
            }
            allocated = threads.getThreadAllocatedBytes(self) - allocated;
            resident = NativeMemoryTest.residentBytes() - resident;
            assertTrue(allocated + " bytes of 4000 frames", allocated < 4000);
            assertTrue(resident + " bytes more of 4000 frames", resident < 1 << 20);
        }
    }

    /** Closes an engine that processes a frame again and again; returns whether that was seen to wait. */
    private static boolean closesBetweenFrames(int side, byte[] nv21) throws Exception {
        MakeupEngine engine = new MakeupEngine();
        engine.setThreads(1);
        engine.setEvenTone(1000);
        byte[] expected = processed(engine, nv21, side, side);
        byte[] result = new byte[nv21.length];
        Frame source = Frame.copyOfNv21(nv21, side, side, LIMITED);
        Frame target = Frame.copyOfNv21(nv21, side, side, LIMITED);
        Throwable[] end = new Throwable[1];
        Thread processing = new Thread(() -> end[0] = assertThrows(IllegalStateException.class, () -> {
            while (true) {
                engine.process(source, target);
                target.copyTo(result);
                assertArrayEquals("the frame is whole", expected, result);
                target.copyFrom(nv21);
            }
        }));
        Thread closing = new Thread(engine::close);
        processing.start();
        Thread.sleep(20);
        closing.start();
        boolean waits = false;
        while (closing.isAlive()) {
            waits |= closing.getState() == Thread.State.BLOCKED;
            Thread.yield();
        }
        processing.join(30000);
        assertNotNull("every frame was whole", end[0]);
        for (ThrowingRunnable call : Arrays.<ThrowingRunnable>asList(() -> engine.process(source),
                () -> engine.setRadius(8), () -> engine.setContrast(Contrast.ABSOLUTE), () -> engine.setTable(null),
                () -> engine.setMask(direct(1), 1, 1, 1), engine::clearMask, () -> engine.setThreads(1))) {
            assertRefused(IllegalStateException.class, "the engine is closed", call);
        }
        return waits;
    }

    @Test
    public void closeWaitsForTheFrameAndIsFinal() throws Exception {
        byte[] nv21 = frame(1600, 1600);
        boolean waits = false;
        for (int i = 0; i < 10 && !waits; ++i) { // a frame may end in the very moment
            waits = closesBetweenFrames(1600, nv21);
        }
        assertTrue("waits for the frame", waits);
    }
}
