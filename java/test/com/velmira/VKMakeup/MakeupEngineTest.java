package com.velmira.VKMakeup;

import static com.velmira.VKMakeup.Fixtures.*;
import static org.junit.Assert.*;

import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.util.*;
import java.util.concurrent.*;
import java.util.zip.CRC32;
import org.junit.Test;
import org.junit.function.ThrowingRunnable;

public class MakeupEngineTest {
    private static final byte[] FRAME = frame(72, 50);
    private static final byte[] PICTURE = picture(2);
    private static final byte[] FILE = file(PICTURE);

    private static void assertProcessed(MakeupEngine engine, int whitening, int softening, byte[] picture) {
        assertArrayEquals(expected(FRAME, 72, 50, whitening, softening, picture), processed(engine));
    }

    private static byte[] processed(MakeupEngine engine) {
        byte[] frame = FRAME.clone();
        engine.process(frame, 72, 50);
        return frame;
    }

    @Test
    public void framesEqualThoseOfTheNativeMethods() {
        int[][] cases = {{640, 480, 50, 1000}, {65, 33, 0, 1000}, {16, 10, 100, 0}, {7, 30, 100, 333}, {1, 1, 9, 900}};
        CRC32 all = new CRC32();
        try (MakeupEngine engine = new MakeupEngine()) {
            for (int[] one : cases) {
                byte[] frame = frame(one[0], one[1]);
                byte[] longer = Arrays.copyOf(frame, frame.length + 100); // what follows the frame is left alone
                byte[] expected = expected(frame, one[0], one[1], one[2], one[3], NEUTRAL);
                engine.setWhitening(one[2]);
                engine.setSoftening(one[3]);
                engine.process(longer, one[0], one[1]);
                assertArrayEquals(Arrays.toString(one), Arrays.copyOf(expected, longer.length), longer);
                all.update(expected, 0, expected.length);
            }
            assertEquals("every processor gives the same bytes", 0x6365861DL, all.getValue());
        }
    }

    @Test
    public void enginesWorkAtOnceEachForSeveralThreads() throws Exception {
        List<MakeupEngine> engines = new ArrayList<>();
        List<Callable<Object>> tasks = new ArrayList<>();
        for (byte[] picture : new byte[][] {PICTURE, NEUTRAL, PICTURE}) {
            MakeupEngine engine = new MakeupEngine(name -> new ByteArrayInputStream(FILE, 0, 12 + picture.length));
            engines.add(engine);
            engine.setWhitening(30 * engines.size());
            byte[] expected = expected(FRAME, 72, 50, 30 * engines.size(), 1000, picture);
            tasks.addAll(Collections.nCopies(2, () -> {
                for (int i = 0; i < 50; ++i) {
                    assertArrayEquals("frame " + i, expected, processed(engine));
                }
                return null;
            }));
        }
        ExecutorService threads = Executors.newCachedThreadPool();
        for (Future<Object> result : threads.invokeAll(tasks, 60, TimeUnit.SECONDS)) {
            result.get();
        }
        threads.shutdown();
        engines.forEach(MakeupEngine::close);
    }

    /** Checks a first and a second frame; returns what the loader or its stream threw. */
    private static Throwable loads(byte[] picture, ResourceLoader loader) {
        try (MakeupEngine engine = new MakeupEngine(loader)) {
            assertProcessed(engine, 50, 1000, picture);
            assertProcessed(engine, 50, 1000, picture == MISSING ? NEUTRAL : picture);
            return engine.resourceFailure();
        }
    }

    @Test
    public void streamsMayDeliverAsTheyLikeAndThrow() {
        assertNull(loads(PICTURE, name -> stream(FILE, 1, null)));
        assertNull(loads(PICTURE, name -> stream(Arrays.copyOf(FILE, FILE.length + 5), 65537, null)));
        for (int size : new int[] {0, 11, 12, FILE.length - 1}) {
            assertNull(loads(NEUTRAL, name -> new ByteArrayInputStream(FILE, 0, size)));
        }
        assertNull(loads(MISSING, name -> null));
        for (Throwable thrown : Arrays.asList(new IOException(), new IllegalStateException(), new LinkageError())) {
            assertSame(thrown, loads(MISSING, name -> rethrow(thrown)));
            assertSame(thrown, loads(MISSING, name -> stream(new byte[5000], 5000, thrown)));
        }
        assertEquals("a stream delivers nothing, and does not end",
                loads(MISSING, name -> stream(FILE, 0, null)).getMessage());
    }

    @Test
    public void resourcesAreLoadedWhenWhiteningChangesOrWhenAsked() {
        List<String> log = new ArrayList<>();
        try (MakeupEngine engine = new MakeupEngine(name -> {
            log.add(name);
            return new ByteArrayInputStream(log.size() < 3 ? new byte[0] : FILE) {
                @Override
                public void close() {
                    log.add("closed");
                }
            };
        })) {
            assertProcessed(engine, 50, 1000, NEUTRAL);
            engine.setWhitening(50);
            assertProcessed(engine, 50, 1000, NEUTRAL);
            assertEquals(Arrays.asList("adjust.vlk", "closed"), log);
            engine.reloadResources();
            assertProcessed(engine, 50, 1000, PICTURE);
            processed(engine); // asks no more
            engine.setWhitening(51);
            assertProcessed(engine, 51, 1000, PICTURE);
            assertEquals(6, log.size());
        }
    }

    @Test
    public void anEngineKeepsNothingOfTheOneItFollows() {
        for (byte[] picture : new byte[][] {PICTURE, picture(3), MISSING, PICTURE, NEUTRAL}) {
            try (MakeupEngine engine = new MakeupEngine(name ->
                    picture == MISSING ? null : new ByteArrayInputStream(file(picture)))) {
                engine.setWhitening(1); // also what a native engine was last given
                assertProcessed(engine, 1, 1000, picture);
            }
        }
    }

    @Test
    public void closeWaitsForTheFrameAndIsFinal() throws Exception {
        Semaphore loading = new Semaphore(0);
        Semaphore go = new Semaphore(0);
        MakeupEngine[] own = new MakeupEngine[1];
        MakeupEngine engine = new MakeupEngine(name -> {
            assertThrows(IllegalStateException.class, own[0]::close);
            assertThrows(IllegalStateException.class, () -> processed(own[0]));
            assertThrows(IllegalStateException.class, () -> own[0].process(Frame.allocateNv21(2, 2, Colorimetry.JFIF)));
            own[0].setSoftening(0); // does not wait, and does not touch the frame
            own[0].setTable(null);
            own[0].clearMask();
            try (MakeupEngine another = new MakeupEngine()) {
                processed(another);
            }
            loading.release();
            go.acquireUninterruptibly();
            return new ByteArrayInputStream(FILE);
        });
        own[0] = engine;
        byte[] frame = FRAME.clone();
        boolean[] interrupted = {false};
        Thread processing = new Thread(() -> {
            engine.process(frame, 72, 50);
            interrupted[0] = Thread.interrupted();
        });
        Thread closing = new Thread(engine::close);
        Thread closingAgain = new Thread(engine::close);
        processing.start();
        assertTrue(loading.tryAcquire(10, TimeUnit.SECONDS));
        closing.start();
        processing.interrupt();
        closing.join(300);
        closingAgain.start();
        closingAgain.join(100);
        assertTrue("an interrupt ends no frame, and every close waits",
                processing.isAlive() && closing.isAlive() && closingAgain.isAlive());
        go.release();
        processing.join(10000);
        closing.join(10000);
        closingAgain.join(10000);
        assertFalse(closing.isAlive() || closingAgain.isAlive());
        assertNull(engine.resourceFailure());
        assertTrue("the interrupt is kept", interrupted[0]);
        assertArrayEquals(expected(FRAME, 72, 50, 50, 1000, PICTURE), frame);

        try (MakeupEngine next = new MakeupEngine()) {
            engine.close();
            for (ThrowingRunnable call : Arrays.<ThrowingRunnable>asList(() -> processed(engine),
                    () -> engine.setWhitening(0), () -> engine.setSoftening(0), engine::reloadResources)) {
                assertRefused(IllegalStateException.class, "the engine is closed", call);
            }
            assertProcessed(next, 50, 1000, NEUTRAL);
        }
    }

    @Test
    public void wrongSizesAndSettingsAreRefusedWithTheirNumbers() {
        try (MakeupEngine engine = new MakeupEngine()) {
            assertRefused(WRONG, "whitening is 101, but must be 0 to 100", () -> engine.setWhitening(101));
            assertRefused(WRONG, "softening is -1, but must be 0 to 1000", () -> engine.setSoftening(-1));
            assertThrows(WRONG, () -> engine.setSoftening(1001));
            assertThrows(NullPointerException.class, () -> engine.process(null, 72, 50));
            assertRefused(WRONG, "a frame of 9 x 5 pixels takes 72 bytes, but the array has 71",
                    () -> engine.process(new byte[71], 9, 5));
            assertProcessed(engine, 50, 1000, NEUTRAL);
        }
        assertThrows(NullPointerException.class, () -> new MakeupEngine(null));
    }
}
