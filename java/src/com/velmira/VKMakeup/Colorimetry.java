package com.velmira.VKMakeup;

/**
 * What the samples of a YUV frame mean: matrix and range. Nothing in the samples tells, and a wrong guess costs
 * contrast or shifts hues.
 *
 * <p>The constants that are no values of the enumeration have the names of Android's data spaces ({@code
 * android.hardware.DataSpace}).
 */
public enum Colorimetry {
    /** BT.601, luma 16 to 235, chroma 16 to 240: what decoders give of SD video. */
    BT601_LIMITED(Colorimetry.MATRIX_BT601, 0),

    /** BT.601, 0 to 255: what Android's cameras and JPEG files have. */
    BT601_FULL(Colorimetry.MATRIX_BT601, 1),

    /** BT.709, luma 16 to 235, chroma 16 to 240: what decoders give of HD video. */
    BT709_LIMITED(Colorimetry.MATRIX_BT709, 0),

    /** BT.709, 0 to 255. */
    BT709_FULL(Colorimetry.MATRIX_BT709, 1);

    /** {@code DATASPACE_JFIF}, which {@code YUV_420_888} of a camera is unless its data space says otherwise. */
    public static final Colorimetry JFIF = BT601_FULL;

    /** {@code DATASPACE_BT601_625}. */
    public static final Colorimetry BT601_625 = BT601_LIMITED;

    /** {@code DATASPACE_BT601_525}: other primaries than {@link #BT601_625}, the same matrix and range. */
    public static final Colorimetry BT601_525 = BT601_LIMITED;

    /** {@code DATASPACE_BT709}. */
    public static final Colorimetry BT709 = BT709_LIMITED;

    // Numbers of ITU-T H.273, as the native side takes them.
    private static final int MATRIX_BT709 = 1;
    private static final int MATRIX_BT601 = 6;

    // Of android.hardware.DataSpace. The "unadjusted" standards 3 and 5 have matrices of their own.
    private static final int STANDARD_SHIFT = 16;
    private static final int STANDARD_BITS = 63;
    private static final int STANDARD_BT709 = 1;
    private static final int STANDARD_BT601_625 = 2;
    private static final int STANDARD_BT601_525 = 4;
    private static final int RANGE_SHIFT = 27;
    private static final int RANGE_BITS = 7;
    private static final int RANGE_FULL = 1;
    private static final int RANGE_LIMITED = 2;

    final int matrix;
    final int range;

    Colorimetry(int matrix, int range) {
        this.matrix = matrix;
        this.range = range;
    }

    /**
     * Decodes a data space, as {@code Image.getDataSpace} and {@code ImageReader.getDataSpace} give it on Android 13
     * and later.
     *
     * @param dataSpace its standard must be BT709, BT601_625 or BT601_525, its range FULL or LIMITED; the transfer
     *     function does not count
     * @return matrix and range
     * @throws IllegalArgumentException for any other standard or range, such as {@code DATASPACE_UNKNOWN} (0)
     */
    public static Colorimetry ofDataSpace(int dataSpace) {
        Colorimetry decoded = ofDataSpace(dataSpace, null);
        if (decoded == null) {
            throw new IllegalArgumentException("data space " + dataSpace + " has standard " + standard(dataSpace)
                    + " and range " + range(dataSpace) + ", but the standard must be 1 (BT709), 2 (BT601_625) or 4"
                    + " (BT601_525), the range 1 (full) or 2 (limited)");
        }
        return decoded;
    }

    /**
     * Decodes a data space where it is one of those that the engine has.
     *
     * @param dataSpace as {@link #ofDataSpace(int)} takes it, or any other
     * @param otherwise for any other, such as unknown (0), BT.2020 and the numbers of old devices: {@link #JFIF} for a
     *     camera. May be null
     * @return matrix and range
     */
    public static Colorimetry ofDataSpace(int dataSpace, Colorimetry otherwise) {
        int standard = standard(dataSpace);
        int range = range(dataSpace);
        boolean isBt601 = standard == STANDARD_BT601_625 || standard == STANDARD_BT601_525;
        if (!isBt601 && standard != STANDARD_BT709 || range != RANGE_FULL && range != RANGE_LIMITED) {
            return otherwise;
        }
        if (range == RANGE_FULL) {
            return isBt601 ? BT601_FULL : BT709_FULL;
        }
        return isBt601 ? BT601_LIMITED : BT709_LIMITED;
    }

    private static int standard(int dataSpace) {
        return dataSpace >> STANDARD_SHIFT & STANDARD_BITS;
    }

    private static int range(int dataSpace) {
        return dataSpace >> RANGE_SHIFT & RANGE_BITS;
    }
}
