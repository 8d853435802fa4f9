package com.velmira.VKMakeup;

/** How luma contrast is measured when softening decides between skin and edge. */
public enum Contrast {
    // In the order of the native numbers.

    /** Against the brightness around it: features in dim light and on dark skin survive. */
    RELATIVE,

    /** In levels, as frames in a {@code byte[]} are always processed. */
    ABSOLUTE
}
