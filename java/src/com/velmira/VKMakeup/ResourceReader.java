package com.velmira.VKMakeup;

import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;

/** Reads files of an application's loader whole, and keeps everything that it throws away from native code. */
final class ResourceReader {
    /** The library asks for a header and one picture of 512 x 512 pixels at most. */
    static final int MAX_SIZE = 12 + 512 * 512 * 4;

    private final ResourceLoader loader;
    private volatile Throwable failure;

    ResourceReader(ResourceLoader loader) {
        this.loader = loader;
    }

    /** Returns a stream that never throws and delivers all that it has in one read, or null. */
    InputStream read(String name) {
        failure = null;
        try (InputStream file = loader.open(name)) {
            return file == null ? null : readWhole(file);
        } catch (Throwable thrown) { // errors, too: native code goes on calling Java and cannot with one pending
            failure = thrown;
            return null;
        }
    }

    Throwable failure() {
        return failure;
    }

    private static InputStream readWhole(InputStream file) throws IOException {
        byte[] bytes = new byte[MAX_SIZE];
        return new ByteArrayInputStream(bytes, 0, readInto(file, bytes));
    }

    /** Reads until the array is full or the stream ends; returns how many bytes there were. */
    static int readInto(InputStream file, byte[] bytes) throws IOException {
        int size = 0;
        while (size < bytes.length) {
            int count = file.read(bytes, size, bytes.length - size);
            if (count < 0) {
                break;
            }
            if (count == 0) {
                throw new IOException("a stream delivers nothing, and does not end");
            }
            size += count;
        }
        return size;
    }
}
