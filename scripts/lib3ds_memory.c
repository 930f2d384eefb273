/* The memory of lib3ds, compiled into it by get_lib3ds.sh in place of malloc and its kin.
 *
 * lib3ds writes to what malloc gives without a look at it. So within a run no allocation comes back
 * with null: it ends the run instead, and gives back all that the run had taken. Blocks of a run lie in
 * a ring with the run's own link. At a good end that link steps out, and the others stay a ring of
 * their own, from which each block can go at any time, on any thread.
 */
#include <setjmp.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

/* In front of each block; keeps its alignment. */
typedef struct Link {
    struct Link *next;
    struct Link *previous;
} Link;

typedef struct Run {
    Link link;
    jmp_buf home;
} Run;

static _Thread_local Run *run;
static _Thread_local void *(*take_memory)(void *, size_t) = realloc;

/* Lets this thread's blocks come from a function like realloc; null for that itself. */
void lib3ds_set_memory(void *(*take)(void *, size_t)) {
    take_memory = take ? take : realloc;
}

static void link_behind(Link *place, Link *block) {
    block->next = place->next;
    block->previous = place;
    place->next->previous = block;
    place->next = block;
}

static void unlink_block(Link *block) {
    block->previous->next = block->next;
    block->next->previous = block->previous;
    block->next = block->previous = block;
}

/* A block of its own, or one that has grown; ends the run where there is no memory. */
static void *take(Link *old, size_t size) {
    Link *block = size <= SIZE_MAX - sizeof(Link) ? take_memory(old, sizeof(Link) + size) : NULL;
    if (!block) {
        if (run)
            longjmp(run->home, 1);
        return NULL;
    }
    if (!old) {
        block->next = block->previous = block;
        if (run)
            link_behind(&run->link, block);
    } else if (block->next == old) {
        block->next = block->previous = block;
    } else {
        block->next->previous = block;
        block->previous->next = block;
    }
    return block + 1;
}

void *lib3ds_malloc(size_t size) {
    return take(NULL, size);
}

void *lib3ds_calloc(size_t count, size_t size) {
    void *block;
    if (size != 0 && count > SIZE_MAX / size)
        return take(NULL, SIZE_MAX);
    block = take(NULL, count * size);
    return block ? memset(block, 0, count * size) : NULL;
}

void lib3ds_free(void *block) {
    if (!block)
        return;
    unlink_block((Link *)block - 1);
    free((Link *)block - 1);
}

/* To no size, a block is gone: lib3ds ends its tracks so. */
void *lib3ds_realloc(void *block, size_t size) {
    if (block && size == 0) {
        lib3ds_free(block);
        return NULL;
    }
    return take(block ? (Link *)block - 1 : NULL, size);
}

/* Runs work(self). Where memory runs out in it or its result is 0, the result is 0, and all blocks that
 * it took are given back; whatever lies between this call and the allocation is left as it stands. */
int lib3ds_run(int (*work)(void *), void *self) {
    Run here;
    Run *const outer = run;
    int result = 0;
    here.link.next = here.link.previous = &here.link;
    if (setjmp(here.home) == 0) {
        run = &here;
        result = work(self);
    } else {
        result = 0;
    }
    run = outer;
    while (result == 0 && here.link.next != &here.link) {
        Link *const block = here.link.next;
        unlink_block(block);
        free(block);
    }
    unlink_block(&here.link);
    return result;
}
