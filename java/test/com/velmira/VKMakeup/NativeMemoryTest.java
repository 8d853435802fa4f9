package com.velmira.VKMakeup;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertTrue;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.List;
import org.junit.Test;

public class NativeMemoryTest {
    private static long residentBytes() throws IOException {
        System.gc();
        byte[] statm = Files.readAllBytes(Paths.get("/proc/self/statm"));
        return Long.parseLong(new String(statm, StandardCharsets.US_ASCII).split(" ")[1]) * 4096;
    }

    private static long engineThreads() {
        return Thread.getAllStackTraces().keySet().stream()
                .filter(thread -> thread.getName().startsWith("VLVKMakeupEngine-")).count();
    }

    private static void useEngines(int count) {
        for (int i = 0; i < count; ++i) {
            try (MakeupEngine engine = new MakeupEngine()) {
                engine.setWhitening(i % 101);
                engine.process(new byte[64 * 96], 64, 64);
            }
        }
    }

    private static long peakOfOpenEngines(int count, int side) throws IOException {
        List<MakeupEngine> engines = new ArrayList<>();
        byte[] frame = Reference.frame(side, side, 1);
        for (int i = 0; i < count; ++i) {
            engines.add(new MakeupEngine());
            engines.get(i).process(frame, side, side);
        }
        long peak = residentBytes();
        engines.forEach(MakeupEngine::close);
        return peak;
    }

    @Test
    public void closedEnginesLeaveNothingBehind() throws Exception {
        useEngines(100);
        long threads = engineThreads();
        long before = residentBytes();
        useEngines(400); // each with a table of 1 MiB
        long growth = residentBytes() - before;
        System.out.println("400 engines one after the other: " + growth / 1024 + " KiB more");
        assertTrue(growth + " bytes", growth < 2 << 20);
        assertEquals(threads, engineThreads());
    }

    @Test
    public void closedEnginesFreeTheBuffersOfTheirFrames() throws Exception {
        peakOfOpenEngines(6, 64);
        long before = residentBytes();
        long held = peakOfOpenEngines(6, 1024) - before;
        long kept = residentBytes() - before;
        System.out.println("6 engines at a time: " + held / 1024 + " KiB while open, " + kept / 1024 + " KiB after");
        assertTrue(held + " bytes", held > 6 << 20);
        assertTrue(kept + " bytes", kept < 2 << 20);
        assertEquals(6, engineThreads());
    }
}
