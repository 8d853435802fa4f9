package com.velmira.VKMakeup;

/** What whitening lifts. */
public enum WhitenArea {
    // In the order of the native numbers.

    /** The whole picture. */
    ALL,

    /** Skin only, by its weight. */
    SKIN
}
