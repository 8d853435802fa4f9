package com.velmira.VKMakeup;

import static org.junit.Assert.*;

import java.nio.file.*;
import java.util.*;
import org.junit.Test;

public class NativeMemoryTest {
    private static long residentBytes() throws Exception {
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
}
