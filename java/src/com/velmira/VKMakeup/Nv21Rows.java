package com.velmira.VKMakeup;

import java.nio.ByteBuffer;

/** The way between an NV21 frame of any strides and an array without padding, row by row. */
final class Nv21Rows {
    private static final byte NO_CHROMA = (byte) 128;

    private final Frame frame;
    private final ByteBuffer luma;
    private final ByteBuffer u;
    private final ByteBuffer v;

    Nv21Rows(Frame frame) {
        this.frame = frame;
        luma = frame.plane(0);
        u = frame.plane(1);
        v = frame.plane(2);
    }

    void read(byte[] nv21) {
        int width = frame.width();
        for (int row = 0; row < frame.height(); ++row) {
            luma.position(row * frame.stride(0));
            luma.put(nv21, row * width, width);
        }
        for (int row = 0; row < chromaRows(); ++row) {
            int from = chroma(row);
            v.position(row * frame.stride(1));
            v.put(nv21, from, throughV());
            u.put(lastU(row), width % 2 == 0 ? nv21[from + width - 1] : width > 1 ? nv21[from + width - 2] : NO_CHROMA);
        }
    }

    void write(byte[] nv21) {
        int width = frame.width();
        for (int row = 0; row < frame.height(); ++row) {
            luma.position(row * frame.stride(0));
            luma.get(nv21, row * width, width);
        }
        for (int row = 0; row < chromaRows(); ++row) {
            v.position(row * frame.stride(1));
            v.get(nv21, chroma(row), throughV());
            if (width % 2 == 0) {
                nv21[chroma(row) + width - 1] = u.get(lastU(row));
            }
        }
    }

    private int chromaRows() {
        return (frame.height() + 1) / 2;
    }

    /** Where a row of pairs begins in the array. */
    private int chroma(int row) {
        return (frame.height() + row) * frame.width();
    }

    /** Bytes of a row up to its last V. The U after that may be missing in the view that begins with V. */
    private int throughV() {
        return frame.width() - 1 + frame.width() % 2;
    }

    private int lastU(int row) {
        return row * frame.stride(1) + throughV() - 1;
    }
}
