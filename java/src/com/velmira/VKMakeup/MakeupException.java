package com.velmira.VKMakeup;

/** The native library could not do what was asked, though the arguments were right: mostly for want of memory. */
public class MakeupException extends RuntimeException {
    private static final long serialVersionUID = 1;

    MakeupException(String message) {
        super(message);
    }

    MakeupException(String message, Throwable cause) {
        super(message, cause);
    }
}
