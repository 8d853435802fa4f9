package com.velmira.VKMakeup;

import static org.junit.Assert.*;

import java.io.ByteArrayInputStream;
import java.nio.file.*;
import java.util.*;
import org.junit.Test;

public class NativeMemoryTest {
    static long residentBytes() throws Exception {
        return Long.parseLong(Files.readAllLines(Paths.get("/proc/self/statm")).get(0).split(" ")[1]) * 4096;
    }

    /** Opens so many engines at a time and closes them; returns the memory that is held in between. */
    private static long useEngines(int count, int side) throws Exception {
        List<MakeupEngine> engines = new ArrayList<>();
        byte[] frame = new byte[Nv21.size(side, side)];
        for (int i = 0; i < count; ++i) {
            engines.add(new MakeupEngine());
            engines.get(i).process(frame, side, side);
        }
        long held = residentBytes();
        engines.forEach(MakeupEngine::close);
        return held;
    }

    @Test
    public void closedEnginesLeaveNothing() throws Exception {
        long before = 0;
        for (int i = 0; i < 500; ++i) {
            before = i == 100 ? residentBytes() : before;
            useEngines(1, 64); // each with a table of 1 MiB
        }
        long growth = residentBytes() - before;
        assertTrue(growth + " bytes more", growth < 2 << 20);

        useEngines(6, 64);
        before = residentBytes();
        long held = useEngines(6, 1024) - before;
        long kept = residentBytes() - before;
        assertTrue(held + " bytes while open", held > 6 << 20);
        assertTrue(kept + " bytes after", kept < 2 << 20);
        assertEquals("threads", 6, Thread.getAllStackTraces().keySet().stream()
                .filter(thread -> thread.getName().startsWith("VLVKMakeupEngine-")).count());
    }

    /** Leaves engines to the collector, with a table of 1 MiB and buffers of their own, some with a path for arrays. */
    private static void leakEngines(int count) throws Exception {
        byte[] table = Fixtures.file(Fixtures.picture(1));
        Frame frame = Frame.allocateNv21(512, 512, Colorimetry.JFIF);
        for (int i = 0; i < count; ++i) {
            MakeupEngine engine = new MakeupEngine();
            engine.setTable(new ByteArrayInputStream(table));
            engine.process(frame);
            if (i % 8 == 0) {
                engine.process(new byte[Nv21.size(64, 64)], 64, 64);
            }
        }
    }

    @Test
    public void leakedEnginesAreFreed() throws Exception {
        leakEngines(1);
        System.gc();
        long before = residentBytes();
        leakEngines(40);
        for (int i = 0; i < 100 && residentBytes() - before > 8 << 20; ++i) {
            System.gc();
            Thread.sleep(50);
        }
        long kept = residentBytes() - before;
        assertTrue(kept + " bytes after", kept < 8 << 20);
    }
}
