package com.velmira.VKMakeup;

import java.lang.reflect.Method;

/** Frees what leaked objects hold, by {@code java.lang.ref.Cleaner}: from Java 9 and Android 13 on. */
final class LeakGuard {
    private static final Method REGISTER;
    private static final Object CLEANER;

    static {
        Method register = null;
        Object cleaner = null;
        try {
            Class<?> type = Class.forName("java.lang.ref.Cleaner");
            register = type.getMethod("register", Object.class, Runnable.class);
            cleaner = type.getMethod("create").invoke(null);
        } catch (ReflectiveOperationException e) {
            register = null; // the platform has none, and leaked objects keep their memory
        }
        REGISTER = register;
        CLEANER = cleaner;
    }

    private LeakGuard() {}

    /** Runs the action, which must not refer to the owner, once nothing refers to the owner any more. */
    static void watch(Object owner, Runnable action) {
        if (REGISTER == null) {
            return;
        }
        try {
            REGISTER.invoke(CLEANER, owner, action);
        } catch (ReflectiveOperationException e) {
            throw new MakeupException("the platform's Cleaner failed", e);
        }
    }
}
