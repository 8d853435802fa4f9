package com.velmira.VKMakeup;

import static org.junit.Assert.assertArrayEquals;
import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertFalse;
import static org.junit.Assert.assertNotEquals;
import static org.junit.Assert.assertNotNull;
import static org.junit.Assert.assertNull;
import static org.junit.Assert.assertSame;
import static org.junit.Assert.assertThrows;
import static org.junit.Assert.assertTrue;

import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.concurrent.Callable;
import java.util.concurrent.CountDownLatch;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicInteger;
import java.util.concurrent.atomic.AtomicReference;
import org.junit.Test;
import org.junit.function.ThrowingRunnable;

public class MakeupEngineTest {
    private static final int WIDTH = 72;
    private static final int HEIGHT = 50;
    private static final byte[] FRAME = Reference.frame(WIDTH, HEIGHT, 1);
    private static final byte[] PICTURE = Resources.picture(2);
    private static final byte[] FILE = Resources.file(PICTURE);

    private static byte[] expected(int whitening, int softening, byte[] picture) throws Exception {
        return Reference.process(FRAME, WIDTH, HEIGHT, whitening, softening, picture);
    }

    private static byte[] processed(MakeupEngine engine) {
        byte[] frame = FRAME.clone();
        engine.process(frame, WIDTH, HEIGHT);
        return frame;
    }

    private static void assertRefused(Class<? extends Throwable> type, String message, ThrowingRunnable call) {
        assertEquals(message, assertThrows(type, call).getMessage());
    }

    private static <T> List<T> together(List<Callable<T>> calls) throws Exception {
        ExecutorService threads = Executors.newFixedThreadPool(calls.size());
        try {
            List<T> results = new ArrayList<>();
            for (Future<T> result : threads.invokeAll(calls, 60, TimeUnit.SECONDS)) {
                results.add(result.get());
            }
            return results;
        } finally {
            threads.shutdownNow();
        }
    }

    @Test
    public void framesEqualThoseOfTheNativeFilter() throws Exception {
        int[][] sizes = {{640, 480}, {65, 33}, {16, 10}, {7, 3}, {1, 1}};
        try (MakeupEngine engine = new MakeupEngine()) {
            for (int[] size : sizes) {
                byte[] frame = Reference.frame(size[0], size[1], size[0]);
                byte[] expected = Reference.process(frame, size[0], size[1], 50, 1000, Reference.NEUTRAL);
                byte[] longer = Arrays.copyOf(frame, frame.length + 100);
                Arrays.fill(longer, frame.length, longer.length, (byte) 77);
                engine.process(longer, size[0], size[1]);
                assertArrayEquals(size[0] + " x " + size[1], expected, Arrays.copyOf(longer, frame.length));
                for (int i = frame.length; i < longer.length; ++i) {
                    assertEquals("behind the frame", 77, longer[i]);
                }
            }
        }
    }

    @Test
    public void settingsTakeEffectAtTheNextFrameWithinTheirRanges() throws Exception {
        int[][] settings = {{0, 1000}, {100, 0}, {100, 333}, {50, 1000}};
        try (MakeupEngine engine = new MakeupEngine()) {
            for (int[] setting : settings) {
                engine.setWhitening(setting[0]);
                engine.setSoftening(setting[1]);
                assertArrayEquals(Arrays.toString(setting), expected(setting[0], setting[1], Reference.NEUTRAL),
                        processed(engine));
            }
            Class<? extends Throwable> type = IllegalArgumentException.class;
            assertRefused(type, "whitening is 101, but must be 0 to 100", () -> engine.setWhitening(101));
            assertRefused(type, "whitening is -1, but must be 0 to 100", () -> engine.setWhitening(-1));
            assertRefused(type, "softening is 1001, but must be 0 to 1000", () -> engine.setSoftening(1001));
            assertRefused(type, "softening is -1, but must be 0 to 1000", () -> engine.setSoftening(-1));
            assertArrayEquals("after refused settings", expected(50, 1000, Reference.NEUTRAL), processed(engine));
        }
    }

    @Test
    public void enginesWorkAtOnceEachWithItsSettingsAndPicture() throws Exception {
        Callable<Boolean> other = () -> serves(90, 1000, name -> new ByteArrayInputStream(FILE), PICTURE);
        Callable<Boolean> neutral = () -> serves(10, 500, name -> new ByteArrayInputStream(FILE, 0, 11),
                Reference.NEUTRAL);
        assertEquals(Arrays.asList(true, true, true), together(Arrays.asList(other, neutral, other)));
    }

    private static boolean serves(int whitening, int softening, ResourceLoader loader, byte[] picture)
            throws Exception {
        byte[] expected = expected(whitening, softening, picture);
        try (MakeupEngine engine = new MakeupEngine(loader)) {
            engine.setWhitening(whitening);
            engine.setSoftening(softening);
            for (int i = 0; i < 50; ++i) {
                assertArrayEquals("frame " + i, expected, processed(engine));
            }
        }
        return true;
    }

    @Test
    public void oneEngineServesSeveralThreads() throws Exception {
        byte[] expected = expected(50, 1000, Reference.NEUTRAL);
        try (MakeupEngine engine = new MakeupEngine()) {
            Callable<Boolean> frames = () -> {
                for (int i = 0; i < 50; ++i) {
                    assertArrayEquals("frame " + i, expected, processed(engine));
                }
                return true;
            };
            together(Arrays.asList(frames, frames, frames));
        }
    }

    @Test
    public void streamsMayDeliverAsTheyLike() throws Exception {
        List<ResourceLoader> good = Arrays.asList(
                name -> Resources.stream(FILE, FILE.length, FILE.length, () -> -1),
                name -> Resources.stream(FILE, FILE.length, 1, () -> -1),
                name -> Resources.stream(FILE, FILE.length + 5, 65537, () -> -1));
        byte[] expected = expected(50, 1000, PICTURE);
        for (ResourceLoader loader : good) {
            try (MakeupEngine engine = new MakeupEngine(loader)) {
                assertArrayEquals(expected, processed(engine));
                assertNull(engine.resourceFailure());
            }
        }
        byte[] neutral = expected(50, 1000, Reference.NEUTRAL);
        for (int size : new int[] {0, 11, 12, FILE.length - 1}) {
            try (MakeupEngine engine = new MakeupEngine(name -> Resources.stream(FILE, size, size + 1, () -> -1))) {
                assertArrayEquals("short of " + size, neutral, processed(engine));
                assertNull(engine.resourceFailure());
            }
        }
    }

    @Test
    public void whatLoadersThrowMakesTheResourceMissing() throws Exception {
        Throwable[] thrown = {null, new IOException("gone"), new IllegalArgumentException(), new LinkageError()};
        for (Throwable failure : thrown) {
            assertMissing(failure, name -> {
                rethrow(failure);
                return null;
            });
        }
        for (Throwable failure : Arrays.copyOfRange(thrown, 1, thrown.length)) {
            assertMissing(failure, name -> Resources.stream(FILE, 5000, 5000, () -> rethrow(failure)));
        }
        try (MakeupEngine engine = new MakeupEngine(name -> Resources.stream(FILE, 5000, 5000, () -> 0))) {
            assertArrayEquals(expected(50, 1000, Reference.MISSING), processed(engine));
            assertEquals("a stream delivers nothing, and does not end", engine.resourceFailure().getMessage());
        }
    }

    private static int rethrow(Throwable thrown) throws IOException {
        if (thrown instanceof IOException) {
            throw (IOException) thrown;
        } else if (thrown instanceof RuntimeException) {
            throw (RuntimeException) thrown;
        } else if (thrown != null) {
            throw (Error) thrown;
        }
        return 0;
    }

    private static void assertMissing(Throwable failure, ResourceLoader loader) throws Exception {
        try (MakeupEngine engine = new MakeupEngine(loader)) {
            assertArrayEquals("first frame", expected(50, 1000, Reference.MISSING), processed(engine));
            assertArrayEquals("second frame", expected(50, 1000, Reference.NEUTRAL), processed(engine));
            assertSame(failure, engine.resourceFailure());
        }
    }

    @Test
    public void resourcesAreLoadedWhenWhiteningChangesOrWhenAsked() throws Exception {
        List<String> log = new ArrayList<>();
        ResourceLoader loader = name -> {
            log.add(name);
            return new ByteArrayInputStream(log.size() < 3 ? new byte[0] : FILE) {
                @Override
                public void close() {
                    log.add("closed");
                }
            };
        };
        try (MakeupEngine engine = new MakeupEngine(loader)) {
            byte[] neutral = processed(engine);
            engine.setSoftening(1000);
            engine.setWhitening(50);
            assertArrayEquals(neutral, processed(engine));
            assertEquals(Arrays.asList("adjust.vlk", "closed"), log);
            engine.reloadResources();
            assertArrayEquals(expected(50, 1000, PICTURE), processed(engine));
            processed(engine);
            assertEquals(4, log.size());
            engine.setWhitening(51);
            assertArrayEquals(expected(51, 1000, PICTURE), processed(engine));
            assertEquals(6, log.size());
        }
    }

    @Test
    public void anEngineKeepsNothingOfTheOneItFollows() throws Exception {
        List<Thread> threads = new ArrayList<>();
        byte[] others = Resources.picture(3);
        byte[][] pictures = {PICTURE, others, Reference.MISSING, PICTURE, Reference.NEUTRAL};
        for (byte[] picture : pictures) {
            try (MakeupEngine engine = new MakeupEngine(name -> {
                threads.add(Thread.currentThread());
                return picture == null ? null
                        : new ByteArrayInputStream(picture.length == 0 ? picture : Resources.file(picture));
            })) {
                engine.setWhitening(1); // also what a native engine was last given
                assertArrayEquals(expected(1, 1000, picture), processed(engine));
                engine.setSoftening(0);
                engine.setWhitening(0);
                processed(engine);
            }
        }
        assertEquals(2 * pictures.length, threads.size());
        for (Thread thread : threads) {
            assertSame("a native engine is used again", threads.get(0), thread);
        }
    }

    @Test
    public void closeWaitsForTheFrameAndIsFinal() throws Exception {
        CountDownLatch loading = new CountDownLatch(1);
        CountDownLatch go = new CountDownLatch(1);
        MakeupEngine engine = new MakeupEngine(name -> {
            loading.countDown();
            try {
                go.await();
            } catch (InterruptedException e) {
                throw new IOException(e);
            }
            return new ByteArrayInputStream(FILE);
        });
        AtomicReference<byte[]> frame = new AtomicReference<>();
        AtomicInteger interrupts = new AtomicInteger();
        Thread processing = new Thread(() -> {
            frame.set(processed(engine));
            interrupts.set(Thread.interrupted() ? 1 : 0);
        });
        processing.start();
        assertTrue(loading.await(10, TimeUnit.SECONDS));
        engine.setWhitening(80); // does not wait, and does not touch the frame
        Thread closing = new Thread(engine::close);
        closing.start();
        processing.interrupt();
        closing.join(300);
        assertTrue("close waits", closing.isAlive());
        assertTrue("an interrupt does not end the frame", processing.isAlive());
        go.countDown();
        processing.join(10000);
        closing.join(10000);
        assertFalse(closing.isAlive());
        assertArrayEquals(expected(50, 1000, PICTURE), frame.get());
        assertEquals("the interrupt is kept", 1, interrupts.get());

        engine.close();
        try (MakeupEngine next = new MakeupEngine()) {
            engine.close();
            String closed = "the engine is closed";
            assertRefused(IllegalStateException.class, closed, () -> processed(engine));
            assertRefused(IllegalStateException.class, closed, () -> engine.setWhitening(0));
            assertRefused(IllegalStateException.class, closed, () -> engine.setSoftening(0));
            assertRefused(IllegalStateException.class, closed, engine::reloadResources);
            assertArrayEquals(expected(50, 1000, Reference.NEUTRAL), processed(next));
        }
    }

    @Test
    public void aLoaderMayOnlyChangeTheSettingsOfItsEngine() throws Exception {
        AtomicReference<MakeupEngine> engine = new AtomicReference<>();
        List<String> refusals = new ArrayList<>();
        try (MakeupEngine loading = new MakeupEngine(name -> {
            for (ThrowingRunnable call : Arrays.<ThrowingRunnable>asList(
                    engine.get()::close, () -> processed(engine.get()))) {
                refusals.add(assertThrows(IllegalStateException.class, call).getMessage());
            }
            engine.get().setSoftening(0);
            try (MakeupEngine another = new MakeupEngine()) {
                processed(another);
            }
            return new ByteArrayInputStream(FILE);
        })) {
            engine.set(loading);
            assertArrayEquals(expected(50, 1000, PICTURE), processed(loading));
            assertArrayEquals(expected(50, 0, PICTURE), processed(loading));
            assertNull(loading.resourceFailure());
        }
        assertEquals(2, refusals.size());
        for (String refusal : refusals) {
            assertTrue(refusal, refusal.matches(
                    "the engine is used by its own resource loader, on thread VLVKMakeupEngine-[0-9]+"));
        }
    }

    @Test
    public void wrongSizesAreRefusedWithTheirNumbers() throws Exception {
        Class<? extends Throwable> type = IllegalArgumentException.class;
        try (MakeupEngine engine = new MakeupEngine()) {
            assertRefused(type, "a frame of 9 x 5 pixels takes 72 bytes, but the array has 71",
                    () -> engine.process(new byte[71], 9, 5));
            assertRefused(type, "a frame of 0 x 5 pixels", () -> engine.process(FRAME.clone(), 0, 5));
            assertRefused(type, "a frame of 5 x -3 pixels", () -> engine.process(FRAME.clone(), 5, -3));
            assertRefused(type,
                    "a frame of 2147483647 x 2147483647 pixels takes 6917529022272372737 bytes, too many for an array",
                    () -> engine.process(FRAME.clone(), Integer.MAX_VALUE, Integer.MAX_VALUE));
            assertThrows(NullPointerException.class, () -> engine.process(null, WIDTH, HEIGHT));
            engine.process(new byte[72], 9, 5);
            assertArrayEquals(expected(50, 1000, Reference.NEUTRAL), processed(engine));
        }
        assertThrows(NullPointerException.class, () -> new MakeupEngine(null));
    }

    /** A caller of the bare methods, with a loader as the native side wants it. */
    @Test
    public void nativeMethodsServeTheirCaller() throws Exception {
        Object loader = new Object() {
            @SuppressWarnings("unused")
            public InputStream loadFromName(String name) {
                return new ByteArrayInputStream(FILE);
            }
        };
        Engine natives = new Engine();
        long first = natives.Init(loader);
        long second = natives.Init(new Object());
        assertNotEquals(first, second);
        natives.setWhitenIntensity(first, 20);
        natives.setSoftenSkinIntensity(first, 700);
        byte[] frame = FRAME.clone();
        assertEquals(0, natives.ProcessVideo(first, frame, WIDTH, HEIGHT));
        assertArrayEquals(expected(20, 700, PICTURE), frame);
        frame = FRAME.clone();
        assertEquals(-1, natives.ProcessVideo(first, frame, -1, HEIGHT));
        assertArrayEquals(FRAME, frame);
        natives.Uninit(first);
        natives.Uninit(second);
        natives.Uninit(0);
        assertNotNull(loader);
    }
}
