package com.velmira.VKMakeup;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Random;

/** Frames, and what the native filter makes of them in a program without Java. */
final class Reference {
    /** Colour pictures beside files: the neutral one, and none. */
    static final byte[] NEUTRAL = new byte[0];
    static final byte[] MISSING = null;

    private Reference() {}

    /** Noise, with chroma about that of skin, so that every stage has something to do. */
    static byte[] frame(int width, int height, long seed) {
        Random random = new Random(seed);
        byte[] frame = new byte[Nv21.size(width, height)];
        for (int i = 0; i < frame.length; ++i) {
            int chroma = (i - width * height) % width % 2 == 0 ? 155 : 110;
            frame[i] = (byte) (i < width * height ? 100 + random.nextInt(60) : chroma + random.nextInt(31) - 15);
        }
        return frame;
    }

    static byte[] process(byte[] frame, int width, int height, int whitening, int softening, byte[] picture)
            throws IOException, InterruptedException {
        Path frameFile = Files.createTempFile("frame", ".nv21");
        Path pictureFile = Files.createTempFile("picture", ".bgra");
        try {
            Files.write(frameFile, frame);
            List<String> command = new ArrayList<>(Arrays.asList(System.getProperty("reference"), frameFile.toString(),
                    "" + width, "" + height, "" + whitening, "" + softening));
            if (picture == MISSING) {
                command.add("-");
            } else if (picture != NEUTRAL) {
                Files.write(pictureFile, picture);
                command.add(pictureFile.toString());
            }
            int result = new ProcessBuilder(command).inheritIO().start().waitFor();
            if (result != 0) {
                throw new IOException(command + " returned " + result);
            }
            return Files.readAllBytes(frameFile);
        } finally {
            Files.delete(frameFile);
            Files.delete(pictureFile);
        }
    }
}
